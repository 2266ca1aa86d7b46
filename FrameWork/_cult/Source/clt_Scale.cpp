// Scaling images and region data for high-DPI screens (see clt_Scale.h).
#include "FrameWork/_cult/Source/clt_Scale.h"

#include "FrameWork/_cult/Source/clt_Image.h"

#include <algorithm>
#include <vector>

namespace
{
// Along one direction, target pixel i covers the source from i * from / to to
// (i + 1) * from / to: in units of 1 / to source pixel, the first source pixel 'first'
// by w0 and the next by from - w0 (the target is never smaller, so at most two).
struct Tap
{
    int32_t first;
    uint32_t w0;
};

std::vector<Tap> Taps(int32_t from, int32_t to, CltScaleMode mode)
{
    std::vector<Tap> taps(static_cast<size_t>(to));
    for (int32_t i = 0; i < to; ++i)
    {
        if (mode == ScaleNearest)
        {
            taps[size_t(i)] = {int32_t((int64_t(2 * i + 1) * from) / (2 * int64_t(to))),
                               uint32_t(from)};
            continue;
        }
        int64_t start = int64_t(i) * from;
        int32_t first = int32_t(start / to);
        int64_t boundary = int64_t(first + 1) * to;
        uint32_t w0 = uint32_t(std::min<int64_t>(start + from, boundary) - start);
        taps[size_t(i)] = {first, w0};
    }
    return taps;
}

uint32_t ReadLE32(const uint8_t* p)
{
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}

void WriteLE32(uint8_t* p, uint32_t v)
{
    for (int k = 0; k < 4; ++k)
        p[k] = uint8_t(v >> (8 * k));
}
} // namespace

bool clt_ScaleImage(const CltImage& source, CltImage& target, CltScaleMode mode)
{
    int32_t sw = source.m_nWidth, sh = source.m_nHeight, tw = target.m_nWidth,
            th = target.m_nHeight;
    if (source.m_Format.bitsPerPixel != 32 || target.m_Format.bitsPerPixel != 32 ||
        !source.m_pData || !target.m_pData || sw <= 0 || sh <= 0 || tw < sw || th < sh)
        return false;
    std::vector<Tap> columns = Taps(sw, tw, mode), rows = Taps(sh, th, mode);
    const uint64_t whole = uint64_t(sw) * uint64_t(sh); // the weights of one target pixel
    for (int32_t y = 0; y < th; ++y)
        for (int32_t x = 0; x < tw; ++x)
        {
            const Tap &cx = columns[size_t(x)], &cy = rows[size_t(y)];
            uint64_t alpha = 0, plain[3] = {}, weighted[3] = {};
            for (int32_t j = 0; j < 2; ++j)
                for (int32_t i = 0; i < 2; ++i)
                {
                    uint64_t wx = i ? uint32_t(sw) - cx.w0 : cx.w0;
                    uint64_t wy = j ? uint32_t(sh) - cy.w0 : cy.w0;
                    if (wx == 0 || wy == 0) continue;
                    const uint8_t* p = source.PixelAddress(cx.first + i, cy.first + j);
                    uint64_t w = wx * wy;
                    alpha += w * p[3];
                    for (int k = 0; k < 3; ++k)
                    {
                        plain[k] += w * p[k];
                        weighted[k] += w * p[3] * p[k];
                    }
                }
            uint8_t* out = target.PixelAddress(x, y);
            for (int k = 0; k < 3; ++k)
                out[k] = uint8_t(alpha ? (weighted[k] + alpha / 2) / alpha
                                       : (plain[k] + whole / 2) / whole);
            out[3] = uint8_t((alpha + whole / 2) / whole);
        }
    return true;
}

void clt_ScaleRegionData(uint8_t* data, uint32_t size, int32_t dpi)
{
    if (!data || size < 32) return;
    for (uint32_t at = 16; at + 4 <= size; at += 4)
    {
        int32_t v = int32_t(ReadLE32(data + at));
        WriteLE32(data + at, uint32_t(clt_Scale(v, dpi)));
    }
}
