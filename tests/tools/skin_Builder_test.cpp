// The skin builder: the checks of a publisher's art with their messages, and a round trip
// of the written files (the banded region among them) through the launcher's own readers.
#include "FrameWork/_cult/Source/clt_ImageFile.h"

#include "skin_Builder.h"
#include "skin_Picture.h"
#include "skin_Region.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{
uint32_t Word(const std::vector<uint8_t>& b, size_t at)
{
    return uint32_t(b[at]) | uint32_t(b[at + 1]) << 8 | uint32_t(b[at + 2]) << 16 |
           uint32_t(b[at + 3]) << 24;
}

SkinPicture Solid(int32_t w, int32_t h, uint32_t rgba)
{
    SkinPicture p;
    p.Resize(w, h);
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
        {
            uint8_t* px = p.At(x, y);
            px[0] = uint8_t(rgba >> 24), px[1] = uint8_t(rgba >> 16), px[2] = uint8_t(rgba >> 8),
            px[3] = uint8_t(rgba);
        }
    return p;
}

// An art folder and a skin folder of the test's own.
struct Folders
{
    fs::path art, skin;
    explicit Folders(const char* name)
    {
        fs::path root = fs::temp_directory_path() / ("skin_test_" + std::string(name));
        fs::remove_all(root);
        art = root / "art";
        skin = root / "skin" / "new"; // made by the builder, as on a publisher's first run
        fs::create_directories(art);
    }
    void Put(const char* name, const SkinPicture& p) const
    {
        ASSERT_TRUE(WriteFile((art / (std::string(name) + ".tga")).string(), EncodeTga32(p)));
    }
    SkinReport Build() const
    {
        SkinOptions o;
        o.artDir = art.string();
        o.skinDir = skin.string();
        return BuildSkin(o);
    }
    // A complete, correct set of art.
    void PutAll() const
    {
        SkinPicture bg = Solid(500, 400, 0x28507880);
        for (int32_t y = 0; y < 400; ++y)
            for (int32_t x = 0; x < 500; ++x)
                bg.At(x, y)[3] = (x + y < 10) ? 0 : (x == 250 ? 200 : 255);
        Put("background", bg);
        Put("active", Solid(500, 30, 0xC8B478FF));
        Put("inactive", Solid(500, 30, 0x5A5A5AFF));
        for (const char* name : {"close", "minimize", "ovrclose", "ovrmin", "selclose", "selmin"})
        {
            SkinPicture b = Solid(25, 23, 0x00000000);
            for (int32_t y = 3; y < 20; ++y)
                for (int32_t x = 8; x < 23; ++x)
                    memcpy(b.At(x, y), "\x10\x20\x30\xFF", 4);
            Put(name, b);
        }
        for (const char* name : {"unselect", "pressed", "focused"})
            Put(name, Solid(270, 40, 0xF0E0C080));
    }
};
} // namespace

TEST(SkinBuilder, TheLaunchersReadersGiveBackTheArt)
{
    Folders f("roundtrip");
    f.PutAll();
    SkinReport r = f.Build();
    ASSERT_TRUE(r.Ok()) << r.errors[0];
    EXPECT_EQ(r.written.size(), 13u);

    CltImage bmp, face, title;
    ASSERT_TRUE(LoadImageFile(CLTID_FileStream, bmp, (f.skin / "product.bmp").string().c_str()));
    ASSERT_TRUE(bmp.ConvertTo(g_pfArgb32));
    ASSERT_EQ(bmp.m_nWidth, 500);
    ASSERT_EQ(bmp.m_nHeight, 400);
    auto bgr = [](const CltImage& i, int32_t x, int32_t y)
    {
        const uint8_t* p = i.PixelAddress(x, y);
        return uint32_t(p[2]) << 16 | uint32_t(p[1]) << 8 | p[0];
    };
    EXPECT_EQ(bgr(bmp, 100, 100), 0x285078u); // opaque: as painted
    EXPECT_EQ(bgr(bmp, 0, 0), 0x000000u);     // transparent: the matte
    // 200/255 of the colour over the black matte, rounded.
    EXPECT_EQ(bgr(bmp, 250, 100), uint32_t((0x28 * 200 + 127) / 255) << 16 |
                                      uint32_t((0x50 * 200 + 127) / 255) << 8 |
                                      uint32_t((0x78 * 200 + 127) / 255));

    ASSERT_TRUE(LoadImageFile(CLTID_FileStream, face, (f.skin / "unselect.tga").string().c_str()));
    ASSERT_TRUE(face.ConvertTo(g_pfArgb32));
    const uint8_t* p = face.PixelAddress(5, 5);
    EXPECT_EQ(std::vector<int>({p[2], p[1], p[0], p[3]}),
              std::vector<int>({0xF0, 0xE0, 0xC0, 0x80}));

    ASSERT_TRUE(LoadImageFile(CLTID_FileStream, title, (f.skin / "close.tga").string().c_str()));
    ASSERT_TRUE(title.ConvertTo(g_pfArgb32));
    EXPECT_EQ(bgr(title, 0, 1), 0xFF00FFu); // the key the launcher reads
    EXPECT_EQ(bgr(title, 10, 10), 0x102030u);

    std::ifstream in(f.skin / "product.rgn", std::ios::binary);
    std::vector<uint8_t> region{std::istreambuf_iterator<char>(in), {}};
    ASSERT_GE(region.size(), 32u);
    EXPECT_EQ(region.size(), 32u + 16u * Word(region, 8));
    EXPECT_EQ(std::vector<uint32_t>(
                  {Word(region, 16), Word(region, 20), Word(region, 24), Word(region, 28)}),
              std::vector<uint32_t>({0, 0, 500, 400}));
}

TEST(SkinBuilder, FaultyArtIsNamedAndNothingIsWritten)
{
    struct Case
    {
        const char* name;
        void (*spoil)(const Folders&);
        std::string error; // after "<art folder>/"
    };
    const Case cases[] = {
        {"transparent background",
         [](const Folders& f) { f.Put("background", Solid(500, 400, 0)); },
         "background.tga: has no opaque pixel; the window would have no area"},
        {"one-pixel background",
         [](const Folders& f) { f.Put("background", Solid(1, 1, 0xFFFFFFFF)); },
         "background.tga: is 1 x 1 pixels; the window needs at least 500 x 30 (its caption bar)"},
        {"caption wider than the bar",
         [](const Folders& f) { f.Put("active", Solid(640, 30, 0xFF)); },
         "active.tga: is 640 x 30 pixels; the caption bar is 500 x 30"},
        {"title button without its key",
         [](const Folders& f) { f.Put("selmin", Solid(25, 23, 0xFF)); },
         "selmin.tga: pixel (0, 1) must be transparent: the launcher takes the key colour from it"},
        {"page buttons of two sizes",
         [](const Folders& f) { f.Put("focused", Solid(260, 40, 0xFF)); },
         "focused.tga: is 260 x 40 pixels, but "},
        {"no room for a label", [](const Folders& f) { f.Put("unselect", Solid(20, 40, 0xFF)); },
         "unselect.tga: is 20 x 40 pixels; a label needs more than 20 x 20 (10 pixels of margin "
         "all round)"},
        {"not a picture",
         [](const Folders& f)
         {
             std::ofstream(f.art / "inactive.png", std::ios::binary) << "not a picture";
             fs::remove(f.art / "inactive.tga");
         },
         "inactive.png: not a readable PNG, TGA or BMP picture"},
    };
    for (const Case& c : cases)
    {
        Folders f("faulty");
        f.PutAll();
        c.spoil(f);
        SkinReport r = f.Build();
        ASSERT_EQ(r.errors.size(), 1u) << c.name;
        std::string prefix = f.art.string() + "/" + c.error;
        EXPECT_EQ(r.errors[0].substr(0, prefix.size()), prefix) << c.name << ": " << r.errors[0];
        EXPECT_FALSE(fs::exists(f.skin)) << c.name;
    }
    // A skin folder that cannot be made (a file stands where its parent would be).
    Folders blocked("blocked");
    blocked.PutAll();
    ASSERT_TRUE(WriteFile(blocked.skin.parent_path().string(), {1}));
    SkinReport r = blocked.Build();
    ASSERT_EQ(r.errors.size(), 1u);
    EXPECT_EQ(r.errors[0].rfind(blocked.skin.string() + ": cannot be created (", 0), 0u)
        << r.errors[0];
    EXPECT_TRUE(r.written.empty());
}

TEST(SkinBuilder, WarningsSayWhatAPlayerWouldSee)
{
    Folders f("warnings");
    f.PutAll();
    f.Put("background", Solid(600, 470, 0x102030FF));
    fs::remove(f.art / "inactive.tga");
    SkinReport r = f.Build();
    ASSERT_TRUE(r.Ok());
    std::string bg = f.art.string() + "/background.tga";
    EXPECT_EQ(
        r.warnings,
        (std::vector<std::string>{
            bg + ": is 600 pixels wide; the caption bar and its buttons cover only the first 500",
            bg + ": has no transparent pixel; the window is a plain rectangle",
            "inactive: no picture; the caption bar shows only the title there"}));
    EXPECT_EQ(r.written.size(), 12u);
}
