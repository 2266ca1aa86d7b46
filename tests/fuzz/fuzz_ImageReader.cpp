// Fuzzes one skin file's way into the window (the reader chosen by the file name the build
// gives, FUZZ_FILE_NAME) with arbitrary bytes through a memory stream: read, then stored
// left to right, converted to the window's 32-bit pixels and scaled for a screen of 144 and
// of 192 DPI, as the skin loader does. The image is read back whole after each step, so an
// image whose size does not match its block shows up as an overrun.
#include <cstddef>
#include <cstdint>
#include <utility>

#include "FrameWork/_cult/Source/clt_ImageFile.h"
#include "FrameWork/_cult/Source/clt_Scale.h"
#include "support/memory_Stream.h"

namespace
{
void ReadWhole(const CltImage& image)
{
    volatile uint32_t sum = 0;
    for (int32_t y = 0; y < image.m_nHeight; ++y)
    {
        const uint8_t* p = image.PixelAddress(0, y);
        for (int32_t x = 0; x < image.m_nWidth; ++x, p += image.XStep())
            for (uint32_t b = 0; b < image.m_Format.bytesPerPixel; ++b)
                sum = sum + p[b];
    }
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    memstream::Use(data, size);
    CltImage image;
    if (LoadImageFile(memstream::Id(), image, FUZZ_FILE_NAME))
    {
        ReadWhole(image);
        image.StoreLeftToRight();
        ReadWhole(image);
        // Scaled only while small: a large picture is slow to scale, not more telling.
        if (image.ConvertTo(g_pfArgb32) && int64_t(image.m_nWidth) * image.m_nHeight <= 4096)
        {
            ReadWhole(image);
            for (auto [dpi, mode] : {std::pair{144, ScaleArea}, std::pair{192, ScaleNearest}})
            {
                CltImage scaled;
                if (scaled.Create(g_pfArgb32, clt_Scale(image.m_nWidth, dpi),
                                  clt_Scale(image.m_nHeight, dpi), OriginBottomLeft) &&
                    !clt_ScaleImage(image, scaled, mode))
                    __builtin_trap(); // a 32-bit picture always scales
                ReadWhole(scaled);
            }
        }
    }
    const memstream::Contents& c = memstream::Current();
    if (c.releases != 1 || c.closes != c.opens) __builtin_trap();
    return 0;
}
