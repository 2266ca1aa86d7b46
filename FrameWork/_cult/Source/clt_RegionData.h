// Window-region files hold a region in the layout of a Windows region data block: a
// 32-byte header whose word at offset 8 is the rectangle count n, then n rectangles of 16
// bytes. The launcher hands the first 32 + 16n bytes, untouched, to the system.
#pragma once

#include <cstdint>

// The number of bytes to hand over, or 0 when the data is shorter than its header says.
uint32_t clt_GetRegionDataSize(const uint8_t* data, uint32_t size);
