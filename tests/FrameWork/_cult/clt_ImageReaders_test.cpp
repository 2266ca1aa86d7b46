// The BMP and TGA readers against files written by ImageMagick from one test picture
// (tests/images/make_test_images.py): every decoded pixel must match the picture, and
// every shorter prefix of each file must be refused cleanly.
#include "FrameWork/_cult/Source/clt_ImageFile.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "support/memory_Stream.h"
#include "support/test_Picture.h"

namespace
{
using test_picture::Bytes;
using test_picture::Picture;
using test_picture::ReadFile;
using test_picture::ReadPam;

struct File
{
    const char* name;
    uint32_t bits;
    int32_t origin;
    bool raw; // pixel bytes follow the header packed, so the stored rows can be compared
};

// Compares the decoded image with the picture; for 8-bit files through the file's palette.
void ExpectPicture(const CltImage& image, const Picture& pic, const File& f, const Bytes& file)
{
    ASSERT_EQ(image.m_nWidth, pic.w);
    ASSERT_EQ(image.m_nHeight, pic.h);
    EXPECT_EQ(image.m_nOrigin, f.origin);
    EXPECT_EQ(image.m_Format.bitsPerPixel, f.bits);
    uint32_t paletteAt = f.bits == 8 ? 14 + 40 : 0;
    for (int32_t y = 0; y < pic.h; ++y)
        for (int32_t x = 0; x < pic.w; ++x)
        {
            const uint8_t* p = image.PixelAddress(x, y);
            const uint8_t* want = pic.At(x, y);
            if (paletteAt) p = &file[paletteAt + 4 * p[0]];
            Bytes got = {p[2], p[1], p[0]};
            Bytes expected = {want[0], want[1], want[2]};
            if (f.bits == 32) got.push_back(p[3]), expected.push_back(want[3]);
            ASSERT_EQ(got, expected) << f.name << " at " << x << "," << y;
        }
}

const File kFiles[] = {
    {"bmp24.bmp", 24, OriginBottomLeft, false},
    {"bmp24_topdown.bmp", 24, OriginTopLeft, false},
    {"bmp8.bmp", 8, OriginBottomLeft, false},
    {"bmp8_topdown.bmp", 8, OriginTopLeft, false},
    {"tga24_raw_TopLeft.tga", 24, OriginTopLeft, true},
    {"tga24_raw_TopRight.tga", 24, OriginTopRight, true},
    {"tga24_raw_BottomLeft.tga", 24, OriginBottomLeft, true},
    {"tga24_raw_BottomRight.tga", 24, OriginBottomRight, true},
    {"tga24_rle_TopLeft.tga", 24, OriginTopLeft, false},
    {"tga24_rle_TopRight.tga", 24, OriginTopRight, false},
    {"tga24_rle_BottomLeft.tga", 24, OriginBottomLeft, false},
    {"tga24_rle_BottomRight.tga", 24, OriginBottomRight, false},
    {"tga32_raw_TopLeft.tga", 32, OriginTopLeft, true},
    {"tga32_raw_TopRight.tga", 32, OriginTopRight, true},
    {"tga32_raw_BottomLeft.tga", 32, OriginBottomLeft, true},
    {"tga32_raw_BottomRight.tga", 32, OriginBottomRight, true},
    {"tga32_rle_TopLeft.tga", 32, OriginTopLeft, false},
    {"tga32_rle_TopRight.tga", 32, OriginTopRight, false},
    {"tga32_rle_BottomLeft.tga", 32, OriginBottomLeft, false},
    {"tga32_rle_BottomRight.tga", 32, OriginBottomRight, false},
};
} // namespace

TEST(ImageReaders, MatchThePictureThatImageMagickWrote)
{
    Picture pic = ReadPam();
    ASSERT_EQ(pic.rgba.size(), size_t(pic.w) * pic.h * 4) << "picture.pam missing";
    for (const File& f : kFiles)
    {
        std::string path = std::string(CLT_TEST_IMAGES) + "/" + f.name;
        CltImage image;
        ASSERT_TRUE(LoadImageFile(CLTID_FileStream, image, path.c_str())) << f.name;
        Bytes file = ReadFile(f.name);
        ExpectPicture(image, pic, f, file);
        if (f.raw) // rows are stored in file order: stored row 0 is the file's first row
        {
            uint32_t row = uint32_t(pic.w) * f.bits / 8;
            EXPECT_EQ(Bytes(image.m_pData, image.m_pData + row), Bytes(&file[18], &file[18 + row]))
                << f.name;
        }
    }
}

TEST(ImageReaders, RefuseEveryTruncationOfTheFiles)
{
    for (const File& f : kFiles)
    {
        Bytes file = ReadFile(f.name);
        ASSERT_FALSE(file.empty()) << f.name;
        // The files end with their last pixel: no footer or trailing bytes.
        for (size_t cut = 0; cut < file.size(); ++cut)
        {
            CltImage image;
            memstream::Use(file.data(), cut);
            ASSERT_FALSE(LoadImageFile(memstream::Id(), image, f.name))
                << f.name << " cut at " << cut;
            // Refused part-way or at once, the image is wholly empty.
            ASSERT_EQ(image.m_pData, nullptr) << f.name << " cut at " << cut;
            ASSERT_EQ(image.m_nSize, 0u);
            ASSERT_EQ(image.m_nWidth | image.m_nHeight | image.m_nPitch | image.m_nOrigin, 0)
                << f.name << " cut at " << cut;
            ASSERT_EQ(memstream::Current().releases, 1);
            ASSERT_EQ(memstream::Current().closes, memstream::Current().opens);
        }
        CltImage image;
        memstream::Use(file.data(), file.size());
        EXPECT_TRUE(LoadImageFile(memstream::Id(), image, f.name)) << f.name;
    }
}
