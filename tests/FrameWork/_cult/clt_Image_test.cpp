// Pixel formats and pixel coding, conversion, and scaling for high-DPI screens. (Creating
// and addressing images is every reader's and blit's, tested there.)
#include "FrameWork/_cult/Source/clt_Image.h"
#include "FrameWork/_cult/Source/clt_Scale.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

TEST(CltPixelFormat, DecodesAndEncodesThroughTheChannelRecords)
{
    const CltColour c = {0x12, 0x34, 0x56, 200};
    struct Case
    {
        const CltPixelFormat* format;
        std::vector<uint8_t> bytes; // encoding of c
        CltColour decoded;          // decoding of those bytes
    } cases[] = {
        {&g_pfArgb32, {0x56, 0x34, 0x12, 200}, {0x12, 0x34, 0x56, 200}},
        // No alpha channel: the blue byte stays the colour's blue, alpha decodes as 0.
        {&g_pfRgb24, {0x56, 0x34, 0x12}, {0x12, 0x34, 0x56, 0}},
        {&g_pfIndexed8, {0x12}, {0x12, 0, 0, 0}},
        // Grey: the three channels share the byte, so encoding ORs them.
        {&g_pfGrey8, {0x12 | 0x34 | 0x56}, {0x76, 0x76, 0x76, 0}},
    };
    for (const Case& k : cases)
    {
        uint8_t out[4] = {0xEE, 0xEE, 0xEE, 0xEE};
        EncodePixel(*k.format, c, out);
        EXPECT_EQ(std::vector<uint8_t>(out, out + k.bytes.size()), k.bytes) << k.format->id;
        EXPECT_EQ(out[k.bytes.size() < 4 ? k.bytes.size() : 3], k.bytes.size() < 4 ? 0xEE : 200)
            << "wrote past the pixel, format " << k.format->id;
        CltColour d = DecodePixel(*k.format, k.bytes.data());
        EXPECT_EQ(memcmp(&d, &k.decoded, 4), 0) << k.format->id;
    }
}

// Indexed to 32 bits: red = index, the rest 0 (a skin picture with a palette shows in wrong
// colours). Grey: R = G = B, alpha 0. (24 bits to 32, rows and origin kept, is every skin
// picture's: the skin images' test under Wine compares each pixel.)
TEST(CltImage, ConvertToFollowsTheChannelRules)
{
    CltImage indexed, grey;
    ASSERT_TRUE(indexed.Create(g_pfIndexed8, 2, 1, OriginTopLeft));
    ASSERT_TRUE(grey.Create(g_pfGrey8, 2, 1, OriginTopLeft));
    indexed.m_pData[0] = grey.m_pData[0] = 7;
    indexed.m_pData[1] = grey.m_pData[1] = 250;
    ASSERT_TRUE(indexed.ConvertTo(g_pfArgb32));
    ASSERT_TRUE(grey.ConvertTo(g_pfArgb32));
    const uint8_t fromIndex[8] = {0, 0, 7, 0, 0, 0, 250, 0};
    const uint8_t fromGrey[8] = {7, 7, 7, 0, 250, 250, 250, 0};
    EXPECT_EQ(memcmp(indexed.m_pData, fromIndex, 8), 0);
    EXPECT_EQ(memcmp(grey.m_pData, fromGrey, 8), 0);
}

TEST(CltScale, CoordinatesRoundToTheNearestPixelHalvesUp)
{
    struct
    {
        int32_t v, dpi, scaled;
    } cases[] = {{500, 144, 750}, {30, 192, 60}, {25, 120, 31}, {6, 120, 8},
                 {-2, 144, -3},   {-1, 120, -1}, {7, 96, 7}};
    for (const auto& c : cases)
        EXPECT_EQ(clt_Scale(c.v, c.dpi), c.scaled) << c.v << " at " << c.dpi;
    EXPECT_EQ(clt_UsableDpi(72), 96);
    EXPECT_EQ(clt_UsableDpi(9600), kCltMaxDpi);
}

// A row of two pixels, blue-green-red-alpha: an opaque one and a second one, scaled.
TEST(CltScale, ImagesRepeatPixelsAtWholeFactorsAndMixOnlyAtEdgesOtherwise)
{
    const uint32_t opaque = 0xFF1E140A, clear = 0x00463C32, grey = 0xFF808080;
    struct
    {
        uint32_t second;
        int32_t dpi;
        CltScaleMode mode;
        std::vector<uint32_t> row; // the target's rows are all alike
    } cases[] = {
        {clear, 192, ScaleArea, {opaque, opaque, clear, clear}},
        {clear, 144, ScaleNearest, {opaque, clear, clear}},
        // The mixed pixel's colour comes from the opaque half only.
        {clear, 144, ScaleArea, {opaque, 0x801E140A, clear}},
        {grey, 144, ScaleArea, {opaque, 0xFF4F4A45, grey}},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.dpi);
        CltImage source, target;
        ASSERT_TRUE(source.Create(g_pfArgb32, 2, 1, OriginBottomLeft));
        memcpy(source.PixelAddress(0, 0), &opaque, 4);
        memcpy(source.PixelAddress(1, 0), &c.second, 4);
        ASSERT_TRUE(
            target.Create(g_pfArgb32, clt_Scale(2, c.dpi), clt_Scale(1, c.dpi), OriginTopLeft));
        ASSERT_TRUE(clt_ScaleImage(source, target, c.mode));
        for (int32_t y = 0; y < target.m_nHeight; ++y)
        {
            std::vector<uint32_t> row(size_t(target.m_nWidth));
            for (int32_t x = 0; x < target.m_nWidth; ++x)
                memcpy(&row[size_t(x)], target.PixelAddress(x, y), 4);
            EXPECT_EQ(row, c.row) << "row " << y;
        }
    }
    CltImage small, grey8;
    ASSERT_TRUE(small.Create(g_pfArgb32, 1, 1, OriginTopLeft));
    ASSERT_TRUE(grey8.Create(g_pfGrey8, 2, 2, OriginTopLeft));
    CltImage large;
    ASSERT_TRUE(large.Create(g_pfArgb32, 2, 2, OriginTopLeft));
    EXPECT_FALSE(clt_ScaleImage(large, small, ScaleArea)); // never shrinks
    EXPECT_FALSE(clt_ScaleImage(grey8, large, ScaleArea));
}

TEST(CltScale, RegionRectanglesAndBoundsScaleTheHeaderStays)
{
    int32_t block[12] = {32, 1, 1, 16, 1, 2, 3, 4, 1, 2, 3, 4};
    clt_ScaleRegionData(reinterpret_cast<uint8_t*>(block), sizeof block, 144);
    EXPECT_EQ(std::vector<int32_t>(block, block + 12),
              (std::vector<int32_t>{32, 1, 1, 16, 2, 3, 5, 6, 2, 3, 5, 6}));
}
