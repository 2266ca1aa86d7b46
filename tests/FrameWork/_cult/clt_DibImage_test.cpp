// DIB-section images, bitmaps loaded through the system with their masks, and the
// drawing-context holder, against the real GDI.
#include "FrameWork/_cult/Source/clt_DC.h"
#include "FrameWork/_cult/Source/clt_DibImage.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace
{
using Bytes = std::vector<uint8_t>;

// Writes an uncompressed bottom-up BMP; rows are given top first as B, G, R per pixel
// (24 bits) or one index per pixel (8 bits, with the palette given as B, G, R, 0).
void WriteBmp(const std::string& path, int32_t w, int32_t h, int bits,
              const std::vector<Bytes>& rows, const Bytes& palette = {})
{
    uint32_t rowBytes = (uint32_t(w) * bits / 8 + 3) & ~3u;
    uint32_t offBits = 54 + uint32_t(palette.size());
    BITMAPFILEHEADER file = {0x4D42, offBits + rowBytes * h, 0, 0, offBits};
    BITMAPINFOHEADER info = {40, w, h, 1, WORD(bits), BI_RGB, 0, 0, 0, DWORD(palette.size() / 4),
                             0};
    FILE* f = fopen(path.c_str(), "wb");
    ASSERT_NE(f, nullptr);
    fwrite(&file, sizeof file, 1, f);
    fwrite(&info, sizeof info, 1, f);
    if (!palette.empty()) fwrite(palette.data(), 1, palette.size(), f);
    for (int32_t y = h - 1; y >= 0; --y)
    {
        Bytes row = rows[size_t(y)];
        row.resize(rowBytes, 0);
        fwrite(row.data(), 1, row.size(), f);
    }
    fclose(f);
}

std::string TempPath(const char* name)
{
    char folder[MAX_PATH];
    GetTempPathA(MAX_PATH, folder);
    return std::string(folder) + name;
}
} // namespace

TEST(CltDibImage, PitchesFollowGdiAndRowsFollowTheOrigin)
{
    struct Case
    {
        const CltPixelFormat* format;
        int32_t width, origin;
        bool made;
        int32_t pitch;
    } cases[] = {
        {&g_pfRgb24, 5, OriginTopLeft, true, 16},      {&g_pfRgb24, 3, OriginBottomLeft, true, 12},
        {&g_pfArgb32, 3, OriginTopLeft, true, 12},     {&g_pfGrey8, 5, OriginTopLeft, true, 8},
        {&g_pfGrey8, 4, OriginBottomLeft, true, 4},    {&g_pfGrey8, 1, OriginTopLeft, true, 4},
        {&g_pfIndexed8, 4, OriginTopLeft, false, 0},   {&g_pfArgb32, 4, OriginTopRight, false, 0},
        {&g_pfArgb32, 4, OriginBottomRight, false, 0},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(std::to_string(c.format->id) + " width " + std::to_string(c.width) +
                     " origin " + std::to_string(c.origin));
        CltDibImage image;
        ASSERT_EQ(image.Create(*c.format, c.width, 3, c.origin), c.made);
        if (!c.made)
        {
            EXPECT_EQ(image.m_hBitmap, nullptr);
            continue;
        }
        EXPECT_EQ(image.m_nPitch, c.pitch);
        EXPECT_EQ(image.m_nSize, uint32_t(c.pitch * 3));
        EXPECT_EQ(image.m_pOwned, nullptr);
        // GDI draws at (x, y) of the picture; PixelAddress must find that pixel.
        CltDC dc;
        ASSERT_TRUE(dc.CreateForScreen());
        dc.Select(image.m_hBitmap);
        SetPixelV(dc.Handle(), c.width - 1, 2, RGB(255, 255, 255));
        GdiFlush();
        EXPECT_EQ(image.PixelAddress(c.width - 1, 2)[0], 255);
        EXPECT_EQ(image.PixelAddress(0, 0)[0], 0);
        if (c.format == &g_pfGrey8)
        {
            RGBQUAD colours[256];
            ASSERT_EQ(GetDIBColorTable(dc.Handle(), 0, 256, colours), 256u);
            EXPECT_EQ(colours[200].rgbRed, 200);
            EXPECT_EQ(colours[200].rgbGreen, 200);
            EXPECT_EQ(colours[200].rgbBlue, 200);
        }
        dc.Restore();
    }
    // Converting keeps the image a section with GDI's pitch.
    CltDibImage image;
    ASSERT_TRUE(image.Create(g_pfRgb24, 3, 2, OriginBottomLeft));
    image.PixelAddress(2, 1)[0] = 77;
    ASSERT_TRUE(image.ConvertTo(g_pfArgb32));
    EXPECT_NE(image.m_hBitmap, nullptr);
    EXPECT_EQ(image.m_nPitch, 12);
    EXPECT_EQ(image.PixelAddress(2, 1)[0], 77);
    EXPECT_FALSE(image.ConvertTo(g_pfIndexed8)); // a section cannot hold it: left empty
    EXPECT_EQ(image.m_pData, nullptr);
    EXPECT_EQ(image.m_hBitmap, nullptr);
}

TEST(CltDibImage, LoadBitmapFileAppliesTheMaskAndKeepsThePalette)
{
    const std::vector<Bytes> picture = {{10, 20, 30, 40, 50, 60, 70, 80, 90},
                                        {11, 21, 31, 41, 51, 61, 71, 81, 91}};
    std::string plain = TempPath("clt_plain.bmp"), masked = TempPath("clt_skin.bmp");
    WriteBmp(plain, 3, 2, 24, picture);
    WriteBmp(masked, 3, 2, 24, picture);
    // The mask: white keeps, black clears.
    WriteBmp(TempPath("clt_skin_m.bmp"), 3, 2, 24,
             {{255, 255, 255, 0, 0, 0, 255, 255, 255}, {0, 0, 0, 255, 255, 255, 255, 255, 255}});

    CltDibImage image;
    ASSERT_TRUE(image.LoadBitmapFile(plain.c_str()));
    EXPECT_EQ(image.m_Format.id, g_pfRgb24.id);
    EXPECT_EQ(image.m_nOrigin, OriginBottomLeft);
    EXPECT_EQ(image.m_nWidth, 3);
    EXPECT_EQ(image.m_nHeight, 2);
    EXPECT_EQ(image.m_nPitch, 12);
    EXPECT_EQ(image.m_hMask, nullptr);
    EXPECT_EQ(image.m_hPalette, nullptr);
    EXPECT_EQ(Bytes(image.PixelAddress(0, 0), image.PixelAddress(0, 0) + 9), picture[0]);
    EXPECT_EQ(Bytes(image.PixelAddress(0, 1), image.PixelAddress(0, 1) + 9), picture[1]);

    ASSERT_TRUE(image.LoadBitmapFile(masked.c_str()));
    EXPECT_NE(image.m_hMask, nullptr);
    GdiFlush();
    EXPECT_EQ(Bytes(image.PixelAddress(0, 0), image.PixelAddress(0, 0) + 9),
              (Bytes{10, 20, 30, 0, 0, 0, 70, 80, 90}));
    EXPECT_EQ(Bytes(image.PixelAddress(0, 1), image.PixelAddress(0, 1) + 9),
              (Bytes{0, 0, 0, 41, 51, 61, 71, 81, 91}));

    // 8 bits: indexed format and a palette made from the colour table.
    std::string indexed = TempPath("clt_indexed.bmp");
    WriteBmp(indexed, 2, 1, 8, {{1, 0}}, {0, 0, 0, 0, 30, 20, 10, 0});
    ASSERT_TRUE(image.LoadBitmapFile(indexed.c_str()));
    EXPECT_EQ(image.m_Format.id, g_pfIndexed8.id);
    EXPECT_EQ(image.PixelAddress(0, 0)[0], 1);
    ASSERT_NE(image.m_hPalette, nullptr);
    PALETTEENTRY entries[2] = {};
    ASSERT_EQ(GetPaletteEntries(image.m_hPalette, 0, 2, entries), 2u);
    EXPECT_EQ(entries[1].peRed, 10);
    EXPECT_EQ(entries[1].peGreen, 20);
    EXPECT_EQ(entries[1].peBlue, 30);

    EXPECT_FALSE(image.LoadBitmapFile(TempPath("clt_missing.bmp").c_str()));
    EXPECT_EQ(image.m_hPalette, nullptr);
    EXPECT_EQ(image.m_pData, nullptr);
}
