// Building a banded region from a mask, and its region data block.
#include "skin_Region.h"

#include <algorithm>
#include <initializer_list>

std::vector<SkinRect> BuildRegionRects(int32_t width, int32_t height,
                                       const std::function<bool(int32_t, int32_t)>& opaque)
{
    std::vector<SkinRect> rects;
    size_t bandStart = 0, bandCount = 0; // the last band in rects
    for (int32_t y = 0; y < height; ++y)
    {
        std::vector<SkinRect> row;
        for (int32_t x = 0; x < width;)
        {
            if (!opaque(x, y))
            {
                ++x;
                continue;
            }
            int32_t start = x;
            while (x < width && opaque(x, y))
                ++x;
            row.push_back(SkinRect{start, y, x, y + 1});
        }
        if (row.empty()) continue;
        // A row with the spans of the band just above it, touching it, grows that band.
        bool grows = bandCount == row.size() && rects[bandStart].bottom == y;
        for (size_t i = 0; grows && i < row.size(); ++i)
            grows = rects[bandStart + i].left == row[i].left &&
                    rects[bandStart + i].right == row[i].right;
        if (grows)
        {
            for (size_t i = 0; i < bandCount; ++i)
                rects[bandStart + i].bottom = y + 1;
            continue;
        }
        bandStart = rects.size();
        bandCount = row.size();
        rects.insert(rects.end(), row.begin(), row.end());
    }
    return rects;
}

namespace
{
void Put32(std::vector<uint8_t>& out, uint32_t v)
{
    for (int i = 0; i < 4; ++i)
        out.push_back(uint8_t(v >> (8 * i)));
}
} // namespace

std::vector<uint8_t> EncodeRegionData(const std::vector<SkinRect>& rects)
{
    SkinRect bounds{0, 0, 0, 0};
    if (!rects.empty())
    {
        bounds = rects.front();
        for (const SkinRect& r : rects)
        {
            bounds.left = std::min(bounds.left, r.left);
            bounds.right = std::max(bounds.right, r.right);
            bounds.bottom = std::max(bounds.bottom, r.bottom);
        }
    }
    std::vector<uint8_t> out;
    out.reserve(32 + 16 * rects.size());
    Put32(out, 32);
    Put32(out, 1);
    Put32(out, uint32_t(rects.size()));
    Put32(out, uint32_t(rects.size() * 16));
    for (int32_t v : {bounds.left, bounds.top, bounds.right, bounds.bottom})
        Put32(out, uint32_t(v));
    for (const SkinRect& r : rects)
        for (int32_t v : {r.left, r.top, r.right, r.bottom})
            Put32(out, uint32_t(v));
    return out;
}
