// The window region of a skin: the opaque pixels of a mask as rectangles in the banded
// form that the system keeps regions in, and the bytes of its region data block.
//
// Each band is a run of rows with the same opaque spans; a span is a maximal run of opaque
// pixels in a row, so spans in a band neither overlap nor touch. Bands are listed top to
// bottom, spans left to right, and two bands that touch with equal spans are one band.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

struct SkinRect
{
    int32_t left, top, right, bottom; // right and bottom exclusive
    bool operator==(const SkinRect& o) const
    {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
};

// The rectangles of the pixels for which opaque(x, y) holds, in a width x height picture.
std::vector<SkinRect> BuildRegionRects(int32_t width, int32_t height,
                                       const std::function<bool(int32_t, int32_t)>& opaque);
// The region data block: a 32-byte header (size 32, type 1, count, bytes of the
// rectangles, bounds) and the rectangles, little-endian. An empty region has zero bounds.
std::vector<uint8_t> EncodeRegionData(const std::vector<SkinRect>& rects);
