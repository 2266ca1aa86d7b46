// The product's window, linked into this test program as into the launcher: the fonts it
// makes for the caption and the page buttons, and the character set they take.
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "product/tarn_Launcher.h"

#include <gtest/gtest.h>

#include <string>

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
