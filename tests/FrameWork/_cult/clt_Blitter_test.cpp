// The blitter: the stated results of the operations the window draws with, in every form
// this processor has. The clipping, the agreement of the forms and the results of the other
// operations (glow, max, flips), pinned by their checksum, are the seeded random run's
// (BlitterConformance).
#include "FrameWork/_cult/Source/clt_Blitter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace
{
struct Form
{
    std::string name;
    std::unique_ptr<CltBlitter> blitter;
};

std::vector<Form> AllForms()
{
    std::vector<Form> forms;
    int count = 0;
    const CltBlitterForm* table = GetBlitterForms(&count);
    for (int i = 0; i < count; ++i)
        if (table[i].supported())
            forms.push_back(
                Form{table[i].name, std::unique_ptr<CltBlitter>(CreateBlitterForm(table[i]))});
    return forms;
}

// A w x h image of the format, every pixel the given bytes.
std::unique_ptr<CltImage> Filled(const CltPixelFormat& f, int32_t w, int32_t h,
                                 std::vector<uint8_t> px, int32_t origin = OriginTopLeft)
{
    auto image = std::make_unique<CltImage>();
    EXPECT_TRUE(image->Create(f, w, h, origin));
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
            memcpy(image->PixelAddress(x, y), px.data(), f.bytesPerPixel);
    return image;
}

std::vector<uint8_t> At(const CltImage& image, int32_t x, int32_t y)
{
    const uint8_t* p = image.PixelAddress(x, y);
    return std::vector<uint8_t>(p, p + image.m_Format.bytesPerPixel);
}
using Bytes = std::vector<uint8_t>;
} // namespace

TEST(CltBlitter, ChoosesTheFastestSupportedFormOnce)
{
    int count = 0;
    const CltBlitterForm* table = GetBlitterForms(&count);
    ASSERT_GE(count, 1);
    EXPECT_STREQ(table[count - 1].name, "generic");
    const CltBlitterForm* first = nullptr;
    for (int i = 0; i < count && !first; ++i)
        if (table[i].supported()) first = &table[i];
    EXPECT_EQ(&GetChosenBlitterForm(), first);
    std::unique_ptr<CltBlitter> made(CreateBlitter());
    EXPECT_NE(made, nullptr);
}

TEST(CltBlitter, BlendsTintsAndCopiesAsStated)
{
    for (Form& form : AllForms())
    {
        SCOPED_TRACE(form.name);
        CltBlitter& b = *form.blitter;
        // Wide enough that the kernels' vector loops and their tails both run.
        const int32_t W = 37;

        // AlphaBlit: opaque 200,100,50 over black gives 199,99,49 (normal); alpha 0 skips.
        // The generic form keeps the destination's alpha byte; the faster forms may leave
        // any there but in the pixels they skip.
        auto shown = [&](const CltImage& image, int32_t x, int32_t y)
        {
            Bytes pixel = At(image, x, y);
            if (form.name != "generic") pixel[3] = 77;
            return pixel;
        };
        auto dst = Filled(g_pfArgb32, W, 2, {0, 0, 0, 77});
        auto src = Filled(g_pfArgb32, W, 2, {50, 100, 200, 255});
        memcpy(src->PixelAddress(5, 0), Bytes{1, 2, 3, 0}.data(), 4);
        b.AlphaBlit(0, *dst, *src, 0, 0);
        EXPECT_EQ(shown(*dst, 0, 0), (Bytes{49, 99, 199, 77}));
        EXPECT_EQ(shown(*dst, W - 1, 1), (Bytes{49, 99, 199, 77}));
        EXPECT_EQ(At(*dst, 5, 0), (Bytes{0, 0, 0, 77}));
        // Screen: 255 - ((255 - s*a/256) * (255 - d) >> 8), here over 100.
        dst = Filled(g_pfArgb32, W, 1, {100, 100, 100, 77});
        src = Filled(g_pfArgb32, W, 1, {50, 100, 200, 128});
        b.AlphaBlit(1, *dst, *src, 0, 0);
        EXPECT_EQ(shown(*dst, 20, 0), (Bytes{116, 131, 162, 77}));

        // BlendBlit with amount 0 only rounds: (d * 255) >> 8.
        dst = Filled(g_pfArgb32, W, 1, {0, 1, 128, 255});
        src = Filled(g_pfArgb32, W, 1, {255, 255, 255, 255});
        b.BlendBlit(0, *dst, *src, 0, 0, 0);
        EXPECT_EQ(At(*dst, 30, 0), (Bytes{0, 0, 127, 255}));
        b.BlendBlit(0, *dst, *src, 0, 0, 255);
        EXPECT_EQ(At(*dst, 36, 0), (Bytes{254, 254, 254, 255}));

        // TintBlit: mask 255 towards (10, 20, 30) over black gives (9, 19, 29); mask 0 skips.
        dst = Filled(g_pfArgb32, W, 1, {0, 0, 0, 5});
        auto mask = Filled(g_pfGrey8, W, 1, {255});
        mask->PixelAddress(33, 0)[0] = 0;
        const uint8_t colour[3] = {10, 20, 30};
        b.TintBlit(0, *dst, *mask, 0, 0, colour);
        EXPECT_EQ(At(*dst, 0, 0), (Bytes{9, 19, 29, 5}));
        EXPECT_EQ(At(*dst, 33, 0), (Bytes{0, 0, 0, 5}));

        // KeyBlit copies every pixel but the key.
        dst = Filled(g_pfArgb32, W, 1, {1, 1, 1, 1});
        src = Filled(g_pfArgb32, W, 1, {0xFF, 0, 0xFF, 0});
        memcpy(src->PixelAddress(9, 0), Bytes{4, 3, 2, 1}.data(), 4);
        b.KeyBlit(*dst, 0, 0, *src, 0, 0, W, 1, 0x00FF00FF);
        EXPECT_EQ(At(*dst, 8, 0), (Bytes{1, 1, 1, 1}));
        EXPECT_EQ(At(*dst, 9, 0), (Bytes{4, 3, 2, 1}));

        // Halve of a 5 x 5 grey image into a large destination writes 2 x 2 pixels.
        auto big = Filled(g_pfGrey8, 8, 8, {9});
        auto grey = Filled(g_pfGrey8, 5, 5, {0});
        grey->m_pData[0] = 3; // the first block sums to 3, the second to 4
        grey->m_pData[2] = 1;
        grey->m_pData[3] = 1;
        grey->m_pData[grey->m_nPitch + 2] = 2;
        b.Halve(*big, *grey, 1);
        // Any non-zero pixel gives 255 in the MMX blitter and in every form that stands in
        // for it; the generic form needs a sum of 4.
        bool mmx = form.name != "generic";
        EXPECT_EQ(At(*big, 0, 0), (Bytes{uint8_t(mmx ? 255 : 0)}));
        EXPECT_EQ(At(*big, 1, 0), (Bytes{255}));
        EXPECT_EQ(At(*big, 2, 0), (Bytes{9}));
        EXPECT_EQ(At(*big, 0, 2), (Bytes{9}));
        b.Halve(*big, *grey, 0);
        EXPECT_EQ(At(*big, 0, 0), (Bytes{0}));
        EXPECT_EQ(At(*big, 1, 0), (Bytes{1}));
    }
}

TEST(CltBlitter, MixColourModes)
{
    CltBlitter b;
    // MixColour: normal, screen, the curved mix at its ends, and an unknown mode.
    struct Mix
    {
        int mode;
        uint8_t amount;
        Bytes out;
    } mixes[] = {
        {0, 128, {(200 * 128 + 10 * 127) >> 8, (20 * 128 + 100 * 127) >> 8, (255 * 128) >> 8, 0}},
        {1, 0, {255 - ((55 * 245) >> 8), 255 - ((235 * 155) >> 8), 255, 0}},
        {2, 0, {(10 * 255) >> 8, (20 * 0 + 100 * 255) >> 8, 0, 0}},
        {2, 255, {(200 * 255) >> 8, (20 * 255) >> 8, (255 * 255) >> 8, 0}},
        {3, 7, {0xAA, 0xBB, 0xCC, 0}},
    };
    for (const Mix& m : mixes)
    {
        uint8_t out[4] = {0xAA, 0xBB, 0xCC, 0xDD};
        b.MixColour(m.mode, 0x0000640A, 0x00FF14C8, m.amount,
                    out); // base (10,100,0), over (200,20,255)
        EXPECT_EQ(Bytes(out, out + 4), m.out) << m.mode << " " << int(m.amount);
    }
}
