// Region data: the size check of a region file's contents.
#include "FrameWork/_cult/Source/clt_RegionData.h"

uint32_t clt_GetRegionDataSize(const uint8_t* data, uint32_t size)
{
    if (!data || size < 32) return 0;
    uint32_t count = uint32_t(data[8]) | uint32_t(data[9]) << 8 | uint32_t(data[10]) << 16 |
                     uint32_t(data[11]) << 24;
    uint64_t needed = 32 + uint64_t(count) * 16;
    return needed <= size ? uint32_t(needed) : 0;
}
