// A seeded random run of every blitter operation, with random sizes, formats, origins,
// modes and positions that clip on every side. Every form must leave exactly the bytes
// that the generic form leaves (the faster forms' Halve mode 1 is the MMX blitter's, with
// its own stated threshold; their AlphaBlit onto 32-bit pixels may leave any alpha byte
// but in the pixels it skips, which nothing shows), and the CRC of everything the generic form produced is
// pinned, so a change of its results shows up even where all forms agree.
#include "FrameWork/_cult/Source/clt_Blitter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace
{
struct Rng
{
    uint32_t state;
    uint32_t Next()
    {
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return state;
    }
    int32_t Range(int32_t lo, int32_t hi) { return lo + int32_t(Next() % uint32_t(hi - lo + 1)); }
    template <typename T, size_t N> const T& Pick(const T (&items)[N]) { return items[Next() % N]; }
};

uint32_t Crc32(uint32_t crc, const uint8_t* p, size_t n)
{
    crc = ~crc;
    while (n--)
    {
        crc ^= *p++;
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

using Image = std::unique_ptr<CltImage>;

Image Random(Rng& rng, const CltPixelFormat& format, int32_t maxW, int32_t maxH)
{
    auto image = std::make_unique<CltImage>();
    // One draw per statement: argument evaluation order differs between compilers.
    int32_t w = rng.Range(1, maxW);
    int32_t h = rng.Range(1, maxH);
    int32_t origin = rng.Range(1, 4);
    image->Create(format, w, h, origin);
    // Bytes biased towards 0 and 255 so that skipped pixels, keys and thresholds occur.
    for (uint32_t i = 0; i < image->m_nSize; ++i)
    {
        uint32_t r = rng.Next() % 8;
        image->m_pData[i] = r == 0 ? 0 : r == 1 ? 255 : uint8_t(rng.Next());
    }
    if (format.bytesPerPixel == 4 && rng.Next() % 3 == 0) // mostly opaque, as buttons are
        for (uint32_t i = 3; i < image->m_nSize; i += 4)
            if (rng.Next() % 64) image->m_pData[i] = 255;
    if (format.bytesPerPixel == 4 && rng.Next() % 2) // runs of equal pixels for KeyBlit
        for (uint32_t i = 4; i + 4 <= image->m_nSize; i += 4)
            if (rng.Next() % 3 == 0) memcpy(image->m_pData + i, image->m_pData, 4);
    return image;
}

Image Clone(const CltImage& from)
{
    auto image = std::make_unique<CltImage>();
    image->Create(from.m_Format, from.m_nWidth, from.m_nHeight, from.m_nOrigin);
    memcpy(image->m_pData, from.m_pData, from.m_nSize);
    return image;
}

// The MMX Halve's mode 1 on stored rows: 255 when any of the four source bytes is not 0.
void HalveAnyNonZero(CltImage& dst, const CltImage& src)
{
    int32_t w = std::min(src.m_nWidth / 2, dst.m_nWidth),
            h = std::min(src.m_nHeight / 2, dst.m_nHeight);
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
        {
            const uint8_t* s = src.m_pData + intptr_t(2 * y) * src.m_nPitch + 2 * x;
            dst.m_pData[intptr_t(y) * dst.m_nPitch + x] =
                (s[0] | s[1] | s[src.m_nPitch] | s[src.m_nPitch + 1]) ? 255 : 0;
        }
}

// One random operation: its inputs, and how to run it on a destination.
struct Operation
{
    std::string text;
    Image dst, src;
    bool mmxHalveAny = false;
    bool alphaBytesFree = false;
    std::function<void(CltBlitter&, CltImage&)> run;
};

Operation MakeOperation(Rng& rng, int kind)
{
    const CltPixelFormat* colour[] = {&g_pfArgb32, &g_pfArgb32, &g_pfArgb32, &g_pfRgb24};
    const CltPixelFormat* any[] = {&g_pfArgb32, &g_pfRgb24, &g_pfGrey8, &g_pfIndexed8};
    Operation op;
    auto place = [&](int32_t& x, int32_t& y)
    {
        x = rng.Range(-op.src->m_nWidth - 2, op.dst->m_nWidth + 2);
        y = rng.Range(-op.src->m_nHeight - 2, op.dst->m_nHeight + 2);
    };
    int mode = rng.Range(0, 2);
    int32_t x = 0, y = 0;
    switch (kind)
    {
    case 0:
    {
        uint32_t base = rng.Next(), over = rng.Next();
        uint8_t amount = uint8_t(rng.Next());
        int mixMode = rng.Range(0, 3);
        op.dst = std::make_unique<CltImage>();
        op.dst->Create(g_pfArgb32, 1, 1, OriginTopLeft);
        op.text = "MixColour " + std::to_string(mixMode);
        op.run = [=](CltBlitter& b, CltImage& d)
        { b.MixColour(mixMode, base, over, amount, d.m_pData); };
        return op;
    }
    case 1:
    case 2:
        op.dst = Random(rng, *rng.Pick(colour), 70, 12);
        op.src = Random(rng, kind == 1 ? g_pfArgb32 : *rng.Pick(colour), 70, 12);
        place(x, y);
        if (kind == 1)
        {
            op.text = "AlphaBlit";
            op.alphaBytesFree = op.dst->m_Format.bytesPerPixel == 4;
            op.run = [=, s = op.src.get()](CltBlitter& b, CltImage& d)
            { b.AlphaBlit(mode, d, *s, x, y); };
        }
        else
        {
            uint8_t amount = uint8_t(rng.Next());
            op.text = "BlendBlit";
            op.run = [=, s = op.src.get()](CltBlitter& b, CltImage& d)
            { b.BlendBlit(mode, d, *s, x, y, amount); };
        }
        break;
    case 3:
    {
        op.dst = Random(rng, *rng.Pick(colour), 70, 12);
        op.src = Random(rng, g_pfGrey8, 70, 12);
        place(x, y);
        uint8_t c[3] = {uint8_t(rng.Next()), uint8_t(rng.Next()), uint8_t(rng.Next())};
        op.text = "TintBlit";
        op.run = [=, s = op.src.get()](CltBlitter& b, CltImage& d)
        { b.TintBlit(mode, d, *s, x, y, c); };
        break;
    }
    case 4:
    {
        op.dst = Random(rng, rng.Next() % 4 ? g_pfGrey8 : g_pfRgb24, 24, 16);
        for (uint32_t i = 0; i < op.dst->m_nSize; ++i) // sparse 255 pixels to spread
            op.dst->m_pData[i] = rng.Next() % 16 == 0 ? 255 : op.dst->m_pData[i] / 4;
        const int sizes[] = {1, 2, 3, 4, 8};
        int size = rng.Pick(sizes);
        op.text = "Glow " + std::to_string(size);
        op.run = [=](CltBlitter& b, CltImage& d) { b.Glow(d, size); };
        break;
    }
    case 5:
        op.dst = Random(rng, *rng.Pick(any), 30, 12);
        op.src = Random(rng, *rng.Pick(any), 30, 12);
        place(x, y);
        op.text = "MaxBlit";
        op.run = [=, s = op.src.get()](CltBlitter& b, CltImage& d) { b.MaxBlit(d, *s, x, y); };
        break;
    case 6:
    {
        op.dst = Random(rng, rng.Next() % 8 ? g_pfArgb32 : g_pfRgb24, 70, 12);
        op.src = Random(rng, g_pfArgb32, 70, 12);
        int32_t sx = rng.Range(-10, op.src->m_nWidth + 2),
                sy = rng.Range(-5, op.src->m_nHeight + 2);
        int32_t dx = rng.Range(-20, op.dst->m_nWidth + 2),
                dy = rng.Range(-8, op.dst->m_nHeight + 2);
        int32_t w = rng.Range(-2, 80), h = rng.Range(-2, 14);
        uint32_t key;
        memcpy(&key, op.src->m_pData, 4);
        op.text = "KeyBlit";
        op.run = [=, s = op.src.get()](CltBlitter& b, CltImage& d)
        { b.KeyBlit(d, dx, dy, *s, sx, sy, w, h, key); };
        break;
    }
    case 7:
    {
        op.dst = Random(rng, rng.Next() % 8 ? g_pfGrey8 : g_pfArgb32, 80, 10);
        op.src = Random(rng, g_pfGrey8, 160, 20);
        int halveMode = rng.Range(0, 2);
        op.mmxHalveAny = halveMode == 1 && op.dst->m_Format.id == g_pfGrey8.id;
        op.text = "Halve " + std::to_string(halveMode);
        op.run = [=, s = op.src.get()](CltBlitter& b, CltImage& d) { b.Halve(d, *s, halveMode); };
        break;
    }
    case 8:
    case 9:
        op.dst = Random(rng, *rng.Pick(any), 20, 9);
        op.text = kind == 8 ? "FlipVertical" : "FlipHorizontal";
        op.run = [kind](CltBlitter& b, CltImage& d)
        { kind == 8 ? b.FlipVertical(d) : b.FlipHorizontal(d); };
        break;
    }
    op.text += " mode " + std::to_string(mode) + " at " + std::to_string(x) + "," +
               std::to_string(y) + " dst " + std::to_string(op.dst->m_nWidth) + "x" +
               std::to_string(op.dst->m_nHeight) + " origin " + std::to_string(op.dst->m_nOrigin);
    return op;
}
} // namespace

TEST(CltBlitterConformance, EveryFormWritesTheGenericBytes)
{
    int count = 0;
    const CltBlitterForm* forms = GetBlitterForms(&count);
    std::vector<std::unique_ptr<CltBlitter>> blitters;
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i)
        if (forms[i].supported() && forms[i].kernels)
        {
            blitters.emplace_back(CreateBlitterForm(forms[i]));
            names.push_back(forms[i].name);
        }
    CltBlitter generic;

    Rng rng{0x5EED1234u};
    uint32_t crc = 0;
    const int kOperations = 6000;
    for (int i = 0; i < kOperations; ++i)
    {
        Operation op = MakeOperation(rng, i % 10);
        Image expected = Clone(*op.dst);
        op.run(generic, *expected);
        crc = Crc32(crc, expected->m_pData, expected->m_nSize);
        for (size_t f = 0; f < blitters.size(); ++f)
        {
            Image got = Clone(*op.dst);
            op.run(*blitters[f], *got);
            const CltImage* want = expected.get();
            Image mmxWant;
            if (op.mmxHalveAny) // every faster form gives the MMX blitter's result
            {
                mmxWant = Clone(*op.dst);
                HalveAnyNonZero(*mmxWant, *op.src);
                want = mmxWant.get();
            }
            for (uint32_t k = 3; op.alphaBytesFree && k < got->m_nSize; k += 4)
                got->m_pData[k] = want->m_pData[k];
            ASSERT_EQ(memcmp(got->m_pData, want->m_pData, want->m_nSize), 0)
                << names[f] << " differs in operation " << i << ": " << op.text;
        }
    }
    EXPECT_EQ(crc, 0xF016A41Eu) << std::hex << crc;
}
