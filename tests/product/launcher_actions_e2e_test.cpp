// End-to-end tests of what the launcher starts: the demo product installed from a CD
// drive by its real installer, the hand-over to the installed launcher, the game with
// its mutex, the uninstaller; the check of the installation media; and the rule that
// system libraries come from the system folder only.
#include "harness/wine_Harness.h"
#include "support/assert_Text.h"
#include "support/demo_Product.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace harness;
using demo::HasLine;
using demo::Launch;

namespace
{
const char kProductKey[] = "Software\\Tarn Games\\Tarn\\1.0";

std::string DemoMedia()
{
    return Join(ExeFolder(), "..\\demo-product");
}

// Puts the files into a CD drive. The test session's CD drives carry the labels
// E: TARN_DISC1, F: GAME_DISC1, G: GAM, H: OTHER, I: game.
void InsertDisc(const std::string& drive, const std::string& from)
{
    RemoveTree(drive + "Install");
    DeleteFileA((drive + "Launcher.exe").c_str());
    ASSERT_TRUE(CopyTree(from, drive));
}

template <typename F> bool WaitFor(F condition, int seconds = 60)
{
    for (int i = 0; i < seconds * 10; ++i)
    {
        if (condition()) return true;
        Sleep(100);
    }
    return false;
}

std::string RegString(const char* name)
{
    char value[1024] = {};
    DWORD size = sizeof value;
    RegGetValueA(HKEY_LOCAL_MACHINE, kProductKey, name, RRF_RT_REG_SZ, nullptr, value, &size);
    return value;
}

DWORD RegDword(const char* name)
{
    DWORD value = 0, size = sizeof value;
    if (RegGetValueA(HKEY_LOCAL_MACHINE, kProductKey, name, RRF_RT_REG_DWORD, nullptr, &value,
                     &size))
        return 0xFFFFFFFF;
    return value;
}

} // namespace

TEST(DemoProduct, InstallHandOverPlayAndUninstallWithoutAWindow)
{
    std::string installDir = Join(TestRoot(), "Program Files\\Tarn");
    RemoveTree(installDir);
    DeleteRegTree(kProductKey);
    InsertDisc("E:\\", DemoMedia());
    // The media's installer runs silently into the test's folder.
    std::string ini = ReadTextFile("E:\\Install\\setup.ini");
    size_t at = ini.find("CmdLine=");
    ini.insert(at + 8, "/S /D=" + installDir);
    WriteTextFile("E:\\Install\\setup.ini", ini);

    // 1. Not installed: -I runs the installer from the disc and ends.
    RunResult install = Launch("E:\\Launcher.exe", "-I");
    EXPECT_EQ(install.exitCode, 0u);
    EXPECT_TRUE(install.boxes.empty());
    EXPECT_TRUE(HasLine(install, "LfxMain: m_dwState is [2]"));
    ASSERT_TRUE(WaitFor(
        [&]
        {
            return GetFileAttributesA(Join(installDir, "Uninstall.exe").c_str()) !=
                   INVALID_FILE_ATTRIBUTES;
        }));
    ASSERT_TRUE(WaitFor([] { return RegString("UninstallString") != ""; }));
    EXPECT_EQ(RegDword("Installed"), 2u);
    EXPECT_EQ(RegString("Install Path"), installDir);
    EXPECT_EQ(RegString("Source Dir"), "E:");
    EXPECT_EQ(RegString("UninstallString"), Join(installDir, "Uninstall.exe"));

    // 2. Installed: the launcher on the disc hands over to the installed one.
    RunResult media = Launch("E:\\Launcher.exe", "");
    EXPECT_EQ(media.exitCode, 0u);
    EXPECT_TRUE(HasLine(media, "LfxMain: Launcher is running from CD. Transferring to HD."));
    // The installed launcher opens its window; the player closes it.
    EXPECT_TRUE(CloseFrameworkWindow("Tarn"));

    // 3. The installed launcher with -I starts the game; the game holds its mutex.
    RunResult play = Launch(Join(installDir, "Launcher.exe"), "-I", {IDYES});
    EXPECT_EQ(play.exitCode, 0u);
    EXPECT_TRUE(HasLine(play, "SourceDir is [E:\\]"));
    // Wine has no sound device here: the player is asked and goes on without sound.
    ASSERT_EQ(play.boxes.size(), 1u);
    EXPECT_EQ(play.boxes[0].title, "Tarn");
    EXPECT_EQ(play.boxes[0].text,
              "No working sound device was found.\n\nDo you want to play without sound?");
    EXPECT_EQ(StyleOf(play.boxes[0]), SeenFromOutside(0x2124)); // No is the default
    HWND game = WaitForWindowClass("TarnDemoGame", 30000);
    ASSERT_NE(game, nullptr);
    EXPECT_EQ(WaitForChildText(game, 1),
              "This is Tarn.exe (Tarn).\r\nCommand line: []\r\nWorking folder: [" +
                  Join(installDir, "GameData") + "]\r\nGame mutex: [TarnGameMutex]");

    // 4. While the game runs, a launcher ends at once.
    RunResult again = Launch(Join(installDir, "Launcher.exe"), "");
    EXPECT_TRUE(HasLine(again, "LfxMain: Game is already running."));
    PostMessageA(game, WM_CLOSE, 0, 0);
    ASSERT_TRUE(WaitFor([] { return FindWindowA("TarnDemoGame", nullptr) == nullptr; }));

    // 5. The uninstaller removes the registry values and the files.
    Process uninstall;
    ASSERT_TRUE(uninstall.Start(Join(installDir, "Uninstall.exe"), "/S _?=" + installDir));
    WaitForSingleObject(uninstall.Handle(), 60000);
    EXPECT_EQ(RegDword("Installed"), 0xFFFFFFFFu);
    EXPECT_EQ(RegString("Install Path"), "");
    EXPECT_EQ(GetFileAttributesA(Join(installDir, "Tarn.exe").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetFileAttributesA(Join(installDir, "Install").c_str()), INVALID_FILE_ATTRIBUTES);
    DeleteRegTree(kProductKey);
}

TEST(LauncherMedia, TheDiscLabelMustBeginWithTheConfiguredLabel)
{
    struct Case
    {
        const char* drive; // see InsertDisc for the labels
        const char* appType;
        const char* disks;
        std::vector<int> answers;
        bool installerStarted;
        const char* asked; // the text of the box, or null
    } cases[] = {
        {"F:\\", "Retail", "1", {}, true, nullptr}, // GAME_DISC1
        {"I:\\", "RETAIL", "1", {}, true, nullptr}, // game
        {"G:\\",
         "Retail",
         "1",
         {IDCANCEL},
         false, // GAM
         "Please insert the Tarn disc into your CD-ROM drive and click OK."},
        {"H:\\",
         "Retail",
         "2",
         {IDCANCEL},
         false, // OTHER
         "Please insert Tarn disc 1 into your CD-ROM drive and click OK."},
        {"H:\\",
         "Retail",
         "0",
         {IDOK, IDCANCEL},
         false,
         "Please insert the Tarn disc into your CD-ROM drive and click OK."},
        {"G:\\", "Demo", "1", {}, true, nullptr}, // only retail products ask for the disc
    };
    std::string staging = Join(TestRoot(), "media");
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.drive + std::string(" ") + c.appType + " " + c.disks);
        RemoveTree(staging);
        demo::Ini ini("Media");
        ini.Set("Startup", "Data", "GAME");
        ini.Set("Startup", "AppType", c.appType);
        ini.Set("Startup", "Disks", c.disks);
        demo::MakeProduct(staging, ini);
        CopyInto(Join(ExeFolder(), "test_helper.exe"), Join(staging, "Install"), "TarnSetup.exe");
        DeleteRegTree(ini.RegistryKey());
        InsertDisc(c.drive, staging);

        RunResult r = Launch(std::string(c.drive) + "Launcher.exe", "-I", c.answers);
        EXPECT_EQ(r.exitCode, 0u);
        ASSERT_EQ(r.boxes.size(), c.answers.size());
        for (const MessageBoxRecord& box : r.boxes)
        {
            EXPECT_EQ(box.title, "Tarn");
            EXPECT_EQ(box.text, c.asked);
            EXPECT_EQ(StyleOf(box), SeenFromOutside(0x2031));
        }
        std::string record = std::string(c.drive) + "Install\\TarnSetup.exe.log";
        if (c.installerStarted) WaitFor([&] { return !ReadTextFile(record).empty(); }, 10);
        EXPECT_EQ(ReadTextFile(record),
                  c.installerStarted ? "args=|cwd=" + std::string(c.drive) + "\n" : "");
    }
}

TEST(LauncherLibraries, PlantedSystemLibrariesAreNotLoaded)
{
    std::string folder = Join(TestRoot(), "planted");
    RemoveTree(folder);
    demo::Ini ini("Planted");
    demo::MakeProduct(folder, ini);
    std::string planted = Join(ExeFolder(), "..\\planted");
    std::vector<std::string> plantedFiles;
    for (const std::string& where : {folder, Join(folder, "Install")})
        for (const char* name : {"ddraw.dll", "DSOUND.DLL"})
        {
            CopyInto(Join(planted, name), where);
            plantedFiles.push_back(Join(where, name));
        }
    // Wine otherwise always uses its own libraries: ask for the files first, as Windows does.
    demo::SetLibraryOverrides("loader.exe", {"ddraw", "dsound"}, "native,builtin");
    demo::SetLibraryOverrides("Launcher.exe", {"ddraw", "dsound"}, "native,builtin");
    // A program beside the planted files that loads the libraries by name gets them.
    CopyInto(Join(ExeFolder(), "test_helper.exe"), folder, "loader.exe");
    for (const char* name : {"ddraw.dll", "DSOUND.DLL"})
    {
        Process loader;
        ASSERT_TRUE(loader.Start(Join(folder, "loader.exe"), std::string("-LOAD=") + name, folder));
        WaitForSingleObject(loader.Handle(), 10000);
        std::string marker = Join(folder, name) + ".loaded";
        EXPECT_NE(GetFileAttributesA(marker.c_str()), INVALID_FILE_ATTRIBUTES) << marker;
        DeleteFileA(marker.c_str());
    }

    // Installed in its own folder: -I runs every check that loads DirectX, then the game.
    demo::MarkInstalled(ini, folder);
    RunResult r = Launch(Join(folder, "Launcher.exe"), "-I", {IDNO, IDNO});
    EXPECT_EQ(r.exitCode, 0u);
    EXPECT_TRUE(HasLine(r, "LfxMain: m_dwState is [1]"));
    ASSERT_EQ(r.boxes.size(), 2u); // no sound device: declined, so nothing is started
    EXPECT_EQ(r.boxes[0].text,
              "No working sound device was found.\n\nDo you want to play without sound?");
    EXPECT_EQ(StyleOf(r.boxes[0]), SeenFromOutside(0x2124));
    EXPECT_EQ(StyleOf(r.boxes[1]), 0x124u); // the product's own question, No the default
    EXPECT_TRUE(r.boxes[1].scripted);
    for (const std::string& file : plantedFiles)
        EXPECT_EQ(GetFileAttributesA((file + ".loaded").c_str()), INVALID_FILE_ATTRIBUTES) << file;
    demo::SetLibraryOverrides("loader.exe", {}, "");
    demo::SetLibraryOverrides("Launcher.exe", {}, "");
    DeleteRegTree(ini.RegistryKey());
}

TEST(LauncherDirectX, TheDirectXFolderOnTheMediaAndOnWindows95)
{
    const std::string lfx = "FrameWork/_lfx/Source/lfx_System";
    auto assertText = [&](const std::string& expression, int line)
    { return expect::AssertText(expression, lfx, line); };
    const std::string offer = "Tarn needs DirectX 7.0 or later, which is not installed on this "
                              "computer.\n\nDo you want to install DirectX now?";
    const std::string noSound =
        "No working sound device was found.\n\nDo you want to play without sound?";
    struct Case
    {
        const char* name;
        bool windows95;
        const char* directXCurrent; // null: missing
        const char* directX95;      // null: missing
        std::vector<int> answers;
        std::vector<std::string> texts;
    } cases[] = {
        {"current folder missing",
         false,
         nullptr,
         "DX95",
         {IDYES, IDCANCEL},
         {offer, assertText("GetIniString(SCT_FOLDERS,VAL_DIRECTX_CURRENT,strDirectX)", 1181)}},
        {"Windows 95 folder missing",
         true,
         "DirectX",
         nullptr,
         {IDYES, IDCANCEL},
         {offer, assertText("GetIniString(SCT_FOLDERS,VAL_DIRECTX,strDirectX)", 1198)}},
        // Windows 95 installs from [Folders] DirectX: the current folder does not exist, and
        // the installation goes on to the launch checks.
        {"Windows 95 folder",
         true,
         "Missing",
         "DX95",
         {IDYES, IDNO, IDNO},
         {offer, noSound, noSound}},
        {"other Windows, current folder",
         false,
         "DirectX",
         "Missing",
         {IDYES, IDNO, IDNO},
         {offer, noSound, noSound}},
    };
    std::string folder = Join(TestRoot(), "directx-folders");
    const char* versionKey = "Software\\Wine\\AppDefaults\\Launcher.exe";
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        RemoveTree(folder);
        demo::Ini ini("DirectXFolders");
        c.directXCurrent ? ini.Set("Folders", "DirectXCurrent", c.directXCurrent)
                         : ini.Remove("Folders", "DirectXCurrent");
        if (c.directX95) ini.Set("Folders", "DirectX", c.directX95);
        demo::MakeProduct(folder, ini);
        WriteTextFile(Join(folder, "Install\\setup.ini"),
                      ini.Text() + "[VokSetupTest]\r\nDirectXState=2\r\nDirectXInstall=0\r\n");
        MakeFolders(Join(folder, "DirectX"));
        MakeFolders(Join(folder, "DX95"));
        demo::MarkInstalled(ini, folder);
        HKEY handle;
        RegCreateKeyExA(HKEY_CURRENT_USER, versionKey, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                        &handle, nullptr);
        if (c.windows95)
            RegSetValueExA(handle, "Version", 0, REG_SZ, reinterpret_cast<const BYTE*>("win95"), 6);
        else
            RegDeleteValueA(handle, "Version");
        RegCloseKey(handle);

        RunResult r = Launch(Join(folder, "Launcher.exe"), "-I", c.answers);
        EXPECT_EQ(r.exitCode, 0u);
        ASSERT_EQ(r.boxes.size(), c.texts.size());
        for (size_t i = 0; i < r.boxes.size(); ++i)
        {
            EXPECT_EQ(r.boxes[i].text, c.texts[i]) << i;
            if (c.texts[i] == offer || c.texts[i] == noSound)
            {
                EXPECT_EQ(r.boxes[i].icon, "question") << i;
                // Going on without sound is never the default; installing DirectX is.
                EXPECT_EQ(r.boxes[i].defaultButton, c.texts[i] == offer ? IDYES : IDNO) << i;
            }
        }
        DeleteRegTree(ini.RegistryKey());
    }
    RegDeleteTreeA(HKEY_CURRENT_USER, versionKey);
}
