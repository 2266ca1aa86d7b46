// The product's window, linked into this test program as into the launcher: the fonts it
// makes for the caption and the page buttons, the character set they take, and the parts
// of an update region that it paints apart.
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "product/tarn_Launcher.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

TEST(TarnWindow, FontsTakeTheCharacterSetOnlyWhenItIsShiftJisExactly)
{
    struct Case
    {
        const char* setting;
        BYTE charset;
    };
    const Case cases[] = {{"SHIFTJIS_CHARSET", SHIFTJIS_CHARSET},
                          {"shiftjis_charset", DEFAULT_CHARSET},
                          {"GB2312_CHARSET", DEFAULT_CHARSET},
                          {"", DEFAULT_CHARSET}};
    for (const Case& c : cases)
    {
        g_Env.Set("CharacterSet", c.setting, false);
        g_TarnLauncher.CreateFonts();
        LOGFONTA caption = {}, button = {};
        ASSERT_EQ(GetObjectA(g_TarnLauncher.CaptionFont(), sizeof caption, &caption),
                  int(sizeof caption));
        ASSERT_EQ(GetObjectA(g_TarnLauncher.ButtonFont(), sizeof button, &button),
                  int(sizeof button));
        EXPECT_EQ(caption.lfCharSet, c.charset) << c.setting;
        EXPECT_EQ(button.lfCharSet, c.charset) << c.setting;
        EXPECT_EQ(std::string(caption.lfFaceName) + " " + std::to_string(caption.lfHeight) + ", " +
                      button.lfFaceName + " " + std::to_string(button.lfHeight),
                  "Arial Bold -15, Arial -30");
    }
}

TEST(TarnWindow, PaintPartsAreTheRunsOfRectanglesWhoseRowsMeet)
{
    using Rects = std::vector<RECT>;
    const RECT window = {0, 0, 500, 470};
    struct Case
    {
        Rects region;
        RECT paint;
        Rects parts;
    } cases[] = {
        // A page change: the caption and each button apart.
        {{{0, 0, 500, 30}, {194, 200, 464, 240}, {194, 247, 464, 287}},
         window,
         {{0, 0, 500, 30}, {194, 200, 464, 240}, {194, 247, 464, 287}}},
        // Two rectangles side by side, and one that meets them from below: one part.
        {{{0, 0, 100, 50}, {300, 0, 400, 50}, {0, 50, 400, 60}}, window, {{0, 0, 400, 60}}},
        {{{0, 0, 500, 470}}, {10, 10, 20, 30}, {{10, 10, 20, 30}}},
    };
    auto text = [](const Rects& rects)
    {
        std::string s;
        for (const RECT& r : rects)
            s += std::to_string(r.left) + "," + std::to_string(r.top) + "," +
                 std::to_string(r.right) + "," + std::to_string(r.bottom) + " ";
        return s;
    };
    for (const Case& c : cases)
    {
        HRGN region = CreateRectRgn(0, 0, 0, 0);
        for (const RECT& r : c.region)
        {
            HRGN part = CreateRectRgnIndirect(&r);
            CombineRgn(region, region, part, RGN_OR);
            DeleteObject(part);
        }
        EXPECT_EQ(text(CTarnLauncher::SeparateParts(region, c.paint)), text(c.parts));
        DeleteObject(region);
    }
    EXPECT_EQ(text(CTarnLauncher::SeparateParts(nullptr, window)), text({window}));
}
