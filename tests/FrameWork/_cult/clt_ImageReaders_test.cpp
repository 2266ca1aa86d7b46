// The BMP and TGA readers against files written by ImageMagick from one test picture
// (tests/images/make_test_images.py): every decoded pixel must match the picture, and
// every shorter prefix of each file must be refused cleanly.
#include "FrameWork/_cult/Source/clt_ImageFile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/memory_Stream.h"
#include "support/test_Picture.h"

namespace
{
using test_picture::Bytes;
using test_picture::File;
using test_picture::Picture;
using test_picture::ReadFile;
using test_picture::ReadPam;

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

} // namespace

TEST(ImageReaders, MatchThePictureThatImageMagickWrote)
{
    Picture pic = ReadPam();
    ASSERT_EQ(pic.rgba.size(), size_t(pic.w) * pic.h * 4) << "picture.pam missing";
    for (const File& f : test_picture::Files())
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
    for (const File& f : test_picture::Files())
    {
        Bytes file = ReadFile(f.name);
        ASSERT_FALSE(file.empty()) << f.name;
        // The files end with their last pixel: no footer or trailing bytes.
        for (size_t cut = 0; cut < file.size(); ++cut)
        {
            CltImage image;
            memstream::Use(file.data(), cut);
            ASSERT_FALSE(LoadImageFile(memstream::Id(), image, f.name.c_str()))
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
        EXPECT_TRUE(LoadImageFile(memstream::Id(), image, f.name.c_str())) << f.name;
    }
}
