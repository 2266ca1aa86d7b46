// The product's own launch code, linked into this test program as into the launcher: the
// setup library's DirectX check, the preparation of a launch (folders and the checks before
// the game starts), and the demo test, which reads setup.ini anew at every call.
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/lfx_Fixture.h"
#include "product/tarn_Launcher.h"
#include "product/tarn_Launch.h"
#include "support/product_Folder.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
// A data folder root\Install holding the given setup library and setup.ini text.
std::string MakeDataFolder(const std::string& name, const std::string& library,
                           const std::string& ini)
{
    std::string root = Join(TestRoot(), name);
    std::string data = Join(root, "Install");
    RemoveTree(root);
    CopyInto(library, data, "VokSetup.dll");
    WriteTextFile(Join(data, "setup.ini"), ini);
    g_Env.Set("LauncherDir", root.c_str(), true);
    g_Env.Set("DataDir", data.c_str(), true);
    g_Env.Set("SourceDir", Join(root, "Source").c_str(), true);
    fs::create_directories(Join(root, "Source"));
    return data;
}

std::string CurrentFolder()
{
    char folder[MAX_PATH] = {};
    GetCurrentDirectoryA(MAX_PATH, folder);
    return folder;
}
} // namespace

TEST(TarnLaunch, TheSetupLibrarysCheckIsPairedWithStartupAndShutdown)
{
    std::string data =
        MakeDataFolder("recording", Join(ExeFolder(), "..\\recording-setup\\VokSetup.dll"), "");
    EXPECT_TRUE(CheckDirectXViaSetup());
    EXPECT_TRUE(CheckDirectXViaSetup());
    std::string round = "Startup " + data + "\nCheckDirectX\nShutdown\n";
    EXPECT_EQ(ReadTextFile(Join(data, "calls.log")), round + round);
    // The library is unloaded again after each check.
    EXPECT_EQ(GetModuleHandleA(Join(data, "VokSetup.dll").c_str()), nullptr);
}

TEST(TarnLaunch, TheDemoTestReadsSetupIniAtEveryCall)
{
    std::string data =
        MakeDataFolder("demo", Join(ExeFolder(), "VokSetup.dll"), "[Startup]\r\nAppType=Demo\r\n");
    EXPECT_TRUE(IsDemoProduct());
    WriteTextFile(Join(data, "setup.ini"), "[Startup]\r\nAppType=demo\r\n");
    EXPECT_FALSE(IsDemoProduct()); // compared case-sensitively
    WriteTextFile(Join(data, "setup.ini"), "[Startup]\r\nAppType=Demo\r\n");
    EXPECT_TRUE(IsDemoProduct());
}

// Whether the game may start or not, the launcher's current folder is then the folder the
// product was installed from, and the game's working folder LauncherDir\GameData.
TEST(TarnLaunch, PreparingALaunchSetsTheFoldersWhateverTheAnswer)
{
    struct
    {
        const char* name;
        std::string settings;
        std::vector<int> answers; // the sound question, then the product's own question
        std::vector<UINT> styles;
        int result;
    } cases[] = {
        // The launcher core's question is task-modal; the product's own (M2, M3) are not.
        {"sound declined, then go on", "Displays=1\r\n", {IDNO, IDYES}, {0x2124, 0x124}, 1},
        {"sound declined twice", "Displays=1\r\n", {IDNO, IDNO}, {0x2124, 0x124}, 0},
        {"no display device", "Displays=0\r\n", {IDYES, IDOK}, {0x2124, MB_ICONEXCLAMATION}, 0},
    };
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.name);
        MakeDataFolder("prepare", Join(ExeFolder(), "VokSetup.dll"),
                       "[VokSetupTest]\r\n" + c.settings);
        std::string root = g_Env["LauncherDir"].c_str();
        SetCurrentDirectoryA(ExeFolder().c_str());
        CltString parameters, folder = "unchanged";
        ScriptedBoxes boxes(c.answers);
        EXPECT_EQ(g_TarnLauncher.PrepareLaunch(0, parameters, folder), c.result);
        ASSERT_EQ(boxes.Shown().size(), c.answers.size());
        for (size_t i = 0; i < c.answers.size(); ++i)
            EXPECT_EQ(boxes.Shown()[i].style, c.styles[i]) << i;
        EXPECT_STREQ(folder.c_str(), Join(root, "GameData").c_str());
        EXPECT_STREQ(parameters.c_str(), "");
        EXPECT_EQ(CurrentFolder(), Join(root, "Source"));
    }
    SetCurrentDirectoryA(ExeFolder().c_str());
}

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
