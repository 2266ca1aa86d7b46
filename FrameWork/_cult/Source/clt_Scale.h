// Scaling for high-DPI screens. A skin is designed for 96 dots per inch; on a screen of
// another DPI every design coordinate and size becomes clt_Scale(v, dpi): v * dpi / 96,
// rounded to the nearest pixel (halves up), so whole factors are exact and neighbouring
// edges stay neighbours. Images are scaled once, when they are loaded, never as they are
// drawn.
#pragma once

#include <cstdint>

class CltImage;

constexpr int32_t kCltDesignDpi = 96;
// The largest DPI scaled for (five times the design size); a larger one is taken as this.
constexpr int32_t kCltMaxDpi = 480;

inline int32_t clt_Scale(int32_t v, int32_t dpi)
{
    int64_t scaled = int64_t(v) * dpi + kCltDesignDpi / 2;
    int64_t q = scaled / kCltDesignDpi;
    return int32_t(q * kCltDesignDpi > scaled ? q - 1 : q); // rounded down, also below zero
}

// The DPI to scale for: below the design DPI (or unknown) the design size, above the
// largest the largest.
inline int32_t clt_UsableDpi(int32_t dpi)
{
    return dpi < kCltDesignDpi ? kCltDesignDpi : dpi > kCltMaxDpi ? kCltMaxDpi : dpi;
}

enum CltScaleMode : int32_t
{
    // Each new pixel takes the colour of the old pixel under its centre: no new colours,
    // so a key colour stays exact.
    ScaleNearest = 1,
    // Each new pixel is the average of the old area it covers, weighted by the overlap
    // (and, for the colour, by alpha where the area is not wholly transparent). At whole
    // factors each new pixel covers one old pixel: the same as ScaleNearest; otherwise
    // only the pixels along an old pixel edge mix, so edges stay sharp.
    ScaleArea = 2,
};

// Fills target (32 bits a pixel, alpha in the fourth byte, at least the source's size in
// both directions) with source scaled to its size. False, and target untouched, when the
// images are not both 32-bit or target is smaller.
bool clt_ScaleImage(const CltImage& source, CltImage& target, CltScaleMode mode);

// Scales the rectangles of a region data block (see clt_RegionData.h) in place; size is
// the block's checked size.
void clt_ScaleRegionData(uint8_t* data, uint32_t size, int32_t dpi);
