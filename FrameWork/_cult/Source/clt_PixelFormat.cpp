// Pixel formats: the four global formats and per-pixel decoding, encoding and row
// conversion through the channel records (with a direct copy for 24 to 32 bits).
#include "FrameWork/_cult/Source/clt_PixelFormat.h"

// The records are constant-initialised, so they are ready before any constructor runs.
const CltPixelFormat g_pfIndexed8 = {{0, 0xFF, 0}, {0, 0, 0}, {0, 0, 0}, {0, 0, 0}, 1, 1, 8, 1};
const CltPixelFormat g_pfArgb32 = {
    {16, 0xFF0000, 0}, {8, 0xFF00, 0}, {0, 0xFF, 0}, {24, 0xFF000000, 0}, 2, 4, 32, 4};
const CltPixelFormat g_pfRgb24 = {
    {16, 0xFF0000, 0}, {8, 0xFF00, 0}, {0, 0xFF, 0}, {0, 0, 0}, 5, 3, 24, 3};
const CltPixelFormat g_pfGrey8 = {{0, 0xFF, 0}, {0, 0xFF, 0}, {0, 0xFF, 0}, {0, 0, 0}, 6, 1, 8, 3};

namespace
{
uint8_t DecodeChannel(const CltChannel& c, uint32_t v)
{
    return static_cast<uint8_t>(((v & c.mask) >> c.shift) << c.loss);
}

uint32_t EncodeChannel(const CltChannel& c, uint8_t value)
{
    if (c.mask == 0) return 0;
    return (static_cast<uint32_t>(value) >> c.loss) << c.shift;
}
} // namespace

CltColour DecodePixel(const CltPixelFormat& format, const uint8_t* pixel)
{
    uint32_t v = 0;
    for (uint32_t i = 0; i < format.bytesPerPixel && i < 4; ++i)
        v |= static_cast<uint32_t>(pixel[i]) << (8 * i);
    return CltColour{DecodeChannel(format.red, v), DecodeChannel(format.green, v),
                     DecodeChannel(format.blue, v), DecodeChannel(format.alpha, v)};
}

void EncodePixel(const CltPixelFormat& format, CltColour colour, uint8_t* out)
{
    uint32_t v = EncodeChannel(format.red, colour.r) | EncodeChannel(format.green, colour.g) |
                 EncodeChannel(format.blue, colour.b) | EncodeChannel(format.alpha, colour.a);
    for (uint32_t i = 0; i < format.bytesPerPixel && i < 4; ++i)
        out[i] = static_cast<uint8_t>(v >> (8 * i));
}

void ConvertRow(const CltPixelFormat& dstFormat, uint8_t* dst, const CltPixelFormat& srcFormat,
                const uint8_t* src, uint32_t count)
{
    // Every opaque skin picture (the background above all) takes this step at start-up:
    // the bytes B, G, R gain an alpha byte of 0, as the channel records give it.
    if (srcFormat.id == g_pfRgb24.id && dstFormat.id == g_pfArgb32.id)
    {
        for (uint32_t i = 0; i < count; ++i, src += 3, dst += 4)
            dst[0] = src[0], dst[1] = src[1], dst[2] = src[2], dst[3] = 0;
        return;
    }
    for (uint32_t i = 0; i < count; ++i)
    {
        EncodePixel(dstFormat, DecodePixel(srcFormat, src), dst);
        src += srcFormat.bytesPerPixel;
        dst += dstFormat.bytesPerPixel;
    }
}
