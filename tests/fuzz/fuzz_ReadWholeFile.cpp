// Fuzzes ReadWholeFile and the region-data size check on what it returns: the size handed
// to the system must lie within the file's bytes, and scaling it for a high-DPI screen stays
// within them.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "FrameWork/_cult/Source/clt_ImageFile.h"
#include "FrameWork/_cult/Source/clt_RegionData.h"
#include "FrameWork/_cult/Source/clt_Scale.h"
#include "support/memory_Stream.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    memstream::Use(data, size);
    CltMemoryBlock* block = ReadWholeFile(memstream::Id(), "product.rgn");
    if (!block)
    {
        if (size != 0) __builtin_trap();
        return 0;
    }
    const uint8_t* bytes = static_cast<const uint8_t*>(block->Lock());
    if (block->GetSize() != size + 2 || memcmp(bytes, data, size) != 0 || bytes[size + 1] != 0)
        __builtin_trap();
    uint32_t n = clt_GetRegionDataSize(bytes, uint32_t(size));
    if (n > size) __builtin_trap();
    volatile uint8_t last = n ? bytes[n - 1] : 0;
    (void)last;
    if (n)
    {
        std::vector<uint8_t> scaled(bytes, bytes + n); // exactly the bytes handed over
        clt_ScaleRegionData(scaled.data(), n, 144);
    }
    block->Unlock();
    block->Release();
    return 0;
}
