// The component registry, the choice of reader by extension, the readers on hand-made and
// malformed data, and ReadWholeFile. Data comes from a memory stream registered as a
// file-stream component, which also counts how streams are used.
#include "FrameWork/_cult/Source/clt_ImageFile.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "support/memory_Stream.h"

namespace
{
using Bytes = std::vector<uint8_t>;

Bytes TgaHeader(uint8_t type, uint16_t w, uint16_t h, uint8_t depth, uint8_t descriptor)
{
    Bytes b(18, 0);
    b[2] = type;
    b[12] = uint8_t(w), b[13] = uint8_t(w >> 8), b[14] = uint8_t(h), b[15] = uint8_t(h >> 8);
    b[16] = depth;
    b[17] = descriptor;
    return b;
}

Bytes BmpHeader(int32_t w, int32_t h, uint16_t bits, uint32_t headerSize = 40, uint32_t used = 0)
{
    Bytes b(14 + headerSize, 0);
    for (size_t i = 14 + 40; i < b.size(); ++i)
        b[i] = 0xAA; // the part of a longer header that the reader skips
    b[0] = 'B', b[1] = 'M';
    memcpy(&b[14], &headerSize, 4);
    memcpy(&b[18], &w, 4);
    memcpy(&b[22], &h, 4);
    b[26] = 1;
    memcpy(&b[28], &bits, 2);
    memcpy(&b[46], &used, 4);
    return b;
}

// The header with its size field changed, its bytes unchanged.
Bytes Resized(Bytes header, uint32_t headerSize)
{
    memcpy(&header[14], &headerSize, 4);
    return header;
}

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// Loads the bytes as the named file through the memory stream.
bool Load(const Bytes& data, CltImage& image, const char* name = "image.tga")
{
    memstream::Use(data.data(), data.size());
    return LoadImageFile(memstream::Id(), image, name);
}

// The stream of the last load was closed after a successful open and destroyed, once each.
void ExpectStreamDiscipline(const char* what)
{
    const memstream::Contents& c = memstream::Current();
    EXPECT_EQ(c.releases, 1) << what;
    EXPECT_EQ(c.closes, c.opens) << what;
}
} // namespace

TEST(LoadImageFile, ChoosesTheReaderByExtension)
{
    const Bytes tga = TgaHeader(2, 1, 1, 24, 0x20) + Bytes{1, 2, 3};
    const Bytes bmp = BmpHeader(1, 1, 24) + Bytes{1, 2, 3, 0};
    struct Case
    {
        const char* name;
        const Bytes* data;
        bool loads;
        int opens;
    } cases[] = {
        {"SKIN\\ACTIVE.TGA", &tga, true, 1}, {"tga", &tga, true, 1},   {"a.b.Tga", &tga, true, 1},
        {"product.bmp", &bmp, true, 1},      {"x.DIB", &bmp, true, 1}, {"x.tga", &bmp, false, 1},
        {"x.png", &tga, false, 0},           {"tga.", &tga, false, 0}, {"bmp.tga.", &bmp, false, 0},
    };
    for (const Case& c : cases)
    {
        CltImage image;
        EXPECT_EQ(Load(*c.data, image, c.name), c.loads) << c.name;
        EXPECT_EQ(memstream::Current().opens, c.opens) << c.name;
        EXPECT_EQ(memstream::Current().releases, c.opens) << c.name;
    }
    CltImage image;
    memstream::Use(tga.data(), tga.size());
    memstream::Current().refuseOpen = true;
    EXPECT_FALSE(LoadImageFile(memstream::Id(), image, "a.tga"));
    ExpectStreamDiscipline("refused open");
    EXPECT_EQ(memstream::Current().closes, 0);
}

// 3 x 2 images of 32 and of 24 bits: the 24-bit rows (9 bytes) are stored 12 bytes apart,
// so a packet that crossed a row without moving to the next stored row would show.
TEST(TgaReader, DecodesRunLengthPacketsAcrossRows)
{
    for (uint32_t bpp : {4u, 3u})
    {
        auto pixel = [&](Bytes b)
        {
            b.resize(bpp);
            return b;
        };
        const Bytes A = pixel({1, 2, 3, 4}), B = pixel({5, 6, 7, 8}), C = pixel({9, 10, 11, 12});
        struct Case
        {
            const char* what;
            Bytes packets;
            std::vector<Bytes> pixels; // the six pixels, stored order
        } cases[] = {
            {"run of 6 (0x85)", Bytes{0x85} + A, {A, A, A, A, A, A}},
            {"raw of 3 (0x02) twice",
             Bytes{0x02} + A + B + C + Bytes{0x02} + C + B + A,
             {A, B, C, C, B, A}},
            {"run crossing a row", Bytes{0x83} + A + Bytes{0x01} + B + C, {A, A, A, A, B, C}},
            {"raw crossing a row",
             Bytes{0x01} + A + B + Bytes{0x03} + C + A + B + C,
             {A, B, C, A, B, C}},
        };
        for (const Case& c : cases)
        {
            CltImage image;
            ASSERT_TRUE(Load(TgaHeader(10, 3, 2, uint8_t(bpp * 8), 0x20) + c.packets, image))
                << c.what;
            ExpectStreamDiscipline(c.what);
            EXPECT_EQ(image.m_nOrigin, OriginTopLeft);
            for (int i = 0; i < 6; ++i)
            {
                const uint8_t* p = image.m_pData + (i / 3) * image.m_nPitch + (i % 3) * bpp;
                EXPECT_EQ(Bytes(p, p + bpp), c.pixels[i])
                    << c.what << " pixel " << i << " of " << bpp * 8 << " bits";
            }
        }
    }
}

// Headers and packets that no reader may take. (Files cut short anywhere are the truncation
// test's, on the files ImageMagick wrote.)
TEST(ImageReaders, RefuseMalformedFilesCleanly)
{
    const Bytes pixel3 = {1, 2, 3};
    struct Case
    {
        const char* what;
        const char* name;
        Bytes data;
    } cases[] = {
        {"colour-mapped TGA", "a.tga", TgaHeader(1, 1, 1, 24, 0) + pixel3},
        {"grey TGA", "a.tga", TgaHeader(3, 1, 1, 24, 0) + pixel3},
        {"RLE colour-mapped", "a.tga", TgaHeader(9, 1, 1, 24, 0) + pixel3},
        {"16-bit TGA", "a.tga", TgaHeader(2, 1, 1, 16, 0) + pixel3},
        {"8-bit TGA", "a.tga", TgaHeader(2, 1, 1, 8, 0) + pixel3},
        {"huge raw TGA", "a.tga", TgaHeader(2, 65535, 65535, 32, 0) + Bytes(100, 0)},
        {"huge RLE TGA", "a.tga", TgaHeader(10, 65535, 65535, 32, 0) + Bytes{0xFF, 1, 2, 3, 4}},
        {"run of 128 past the image", "a.tga",
         TgaHeader(10, 3, 2, 24, 0) + Bytes{0x81} + pixel3 + Bytes{0xFF} + pixel3},
        {"raw past the image", "a.tga",
         TgaHeader(10, 3, 2, 24, 0) + Bytes{0x84} + pixel3 + Bytes{0x01} + pixel3 + pixel3},
        {"TGA without pixels", "a.tga", TgaHeader(2, 0, 7, 24, 0) + pixel3},
        {"BMP without rows", "a.bmp", BmpHeader(4, 0, 24) + Bytes(16, 0)},
        {"BMP without columns", "a.bmp", BmpHeader(0, -1000000, 24) + Bytes(16, 0)},
        {"32-bit BMP", "a.bmp", BmpHeader(1, 1, 32) + Bytes(4, 0)},
        {"16-bit BMP", "a.bmp", BmpHeader(1, 1, 16) + Bytes(4, 0)},
        {"4-bit BMP", "a.bmp", BmpHeader(1, 1, 4) + Bytes(4, 0)},
        {"header size 12", "a.bmp", Resized(BmpHeader(1, 1, 24), 12) + Bytes(40, 0)},
        {"header longer than the file", "a.bmp", Resized(BmpHeader(1, 1, 24), 400) + Bytes(4, 0)},
        {"colour table past the end", "a.bmp", BmpHeader(1, 1, 8, 40, 0x40000000) + Bytes(8, 0)},
        {"negative width", "a.bmp", BmpHeader(-4, 1, 24) + Bytes(64, 0)},
        {"height -2^31", "a.bmp", BmpHeader(1, INT32_MIN, 24) + Bytes(64, 0)},
        {"rows overflow 32 bits", "a.bmp", BmpHeader(0x7FFFFFFF, 0x7FFFFFFF, 24) + Bytes(64, 0)},
    };
    for (const Case& c : cases)
    {
        CltImage image;
        EXPECT_FALSE(Load(c.data, image, c.name)) << c.what;
        EXPECT_LE(image.m_nSize, 64u) << c.what << ": allocated beyond what the file holds";
        ExpectStreamDiscipline(c.what);
    }
}

TEST(ReadWholeFile, ReturnsTheBytesAndTwoZeros)
{
    const Bytes five = {'a', 'b', 'c', 'd', 'e'};
    memstream::Use(five.data(), five.size());
    CltMemoryBlock* block = ReadWholeFile(memstream::Id(), "product.rgn");
    ASSERT_NE(block, nullptr);
    ExpectStreamDiscipline("five bytes");
    ASSERT_EQ(block->GetSize(), 7u);
    const uint8_t* p = static_cast<const uint8_t*>(block->Lock());
    EXPECT_EQ(Bytes(p, p + 7), (Bytes{'a', 'b', 'c', 'd', 'e', 0, 0}));
    block->Unlock();
    block->Release();

    memstream::Use(five.data(), 0);
    EXPECT_EQ(ReadWholeFile(memstream::Id(), "empty.rgn"), nullptr);
    ExpectStreamDiscipline("empty");
    memstream::Use(five.data(), 5);
    memstream::Current().refuseOpen = true;
    EXPECT_EQ(ReadWholeFile(memstream::Id(), "missing.rgn"), nullptr);
    EXPECT_EQ(memstream::Current().releases, 1);
    EXPECT_EQ(ReadWholeFile(CLTID_FileStream, "no such folder/none.rgn"), nullptr);
}
