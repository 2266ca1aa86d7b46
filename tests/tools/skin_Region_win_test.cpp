// The skin builder's region against the system's: the same mask, built by the system from
// one rectangle per run of opaque pixels, must give the same region data, byte for byte.
#include "skin_Picture.h"
#include "skin_Region.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace
{
using Mask = std::function<bool(int32_t, int32_t)>;

std::vector<uint8_t> SystemRegionData(int32_t w, int32_t h, const Mask& opaque)
{
    HRGN region = CreateRectRgn(0, 0, 0, 0);
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w;)
        {
            if (!opaque(x, y))
            {
                ++x;
                continue;
            }
            int32_t start = x;
            while (x < w && opaque(x, y))
                ++x;
            HRGN run = CreateRectRgn(start, y, x, y + 1);
            CombineRgn(region, region, run, RGN_OR);
            DeleteObject(run);
        }
    std::vector<uint8_t> data(GetRegionData(region, 0, nullptr));
    GetRegionData(region, DWORD(data.size()), reinterpret_cast<RGNDATA*>(data.data()));
    DeleteObject(region);
    return data;
}

uint32_t g_seed;
bool Noise(int32_t x, int32_t y, uint32_t percent)
{
    uint32_t h = (uint32_t(x) * 73856093u) ^ (uint32_t(y) * 19349663u) ^ g_seed;
    h = (h ^ (h >> 13)) * 1274126177u;
    return (h >> 8) % 100 < percent;
}
} // namespace

TEST(SkinRegionOnTheSystem, EqualsTheRegionTheSystemBuilds)
{
    struct Case
    {
        const char* name;
        int32_t w, h;
        Mask opaque;
    };
    SkinPicture art;
    std::string error;
    ASSERT_TRUE(ReadPicture(DEMO_ART "\\background.tga", art, error)) << error;
    const Case cases[] = {
        {"empty", 10, 10, [](int32_t, int32_t) { return false; }},
        {"full", 20, 7, [](int32_t, int32_t) { return true; }},
        {"circle", 64, 64,
         [](int32_t x, int32_t y) { return (x - 32) * (x - 32) + (y - 32) * (y - 32) < 900; }},
        {"bevelled with a notch", 50, 40,
         [](int32_t x, int32_t y)
         { return x + y >= 6 && (49 - x) + y >= 6 && !(y > 15 && y < 20 && x < 4); }},
        {"sparse noise", 40, 30, [](int32_t x, int32_t y) { return Noise(x, y, 20); }},
        {"dense noise", 40, 30, [](int32_t x, int32_t y) { return Noise(x, y, 85); }},
        {"stripes", 30, 30, [](int32_t x, int32_t y) { return (x / 3 + y / 5) % 2 == 0; }},
        {"the demo's background", art.width, art.height,
         [&](int32_t x, int32_t y) { return art.At(x, y)[3] >= 128; }},
    };
    for (g_seed = 1; g_seed <= 3; ++g_seed)
        for (const Case& c : cases)
            EXPECT_EQ(EncodeRegionData(BuildRegionRects(c.w, c.h, c.opaque)),
                      SystemRegionData(c.w, c.h, c.opaque))
                << c.name << ", seed " << g_seed;
}
