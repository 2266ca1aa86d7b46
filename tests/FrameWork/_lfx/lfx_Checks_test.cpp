// The checks and actions of LfxMain in this process, against real files, registry values
// and the demo setup library (steered through its test settings). The memory figures, the
// system restart and the message boxes go through the launcher's seams, so that the tests
// do not depend on this machine's memory, do not restart the Wine session, and answer the
// boxes from a script.
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"
#include "lfx_Fixture.h"
#include "support/product_Folder.h"

#include <gtest/gtest.h>

namespace
{
MEMORYSTATUS g_memory;
void WINAPI FakeMemoryStatus(LPMEMORYSTATUS status)
{
    *status = g_memory;
}
// Whether the process may shut the system down: ExitWindowsEx fails without it.
bool ShutdownPrivilegeEnabled()
{
    HANDLE token;
    OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token);
    LUID shutdown;
    LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &shutdown);
    PRIVILEGE_SET query = {1, PRIVILEGE_SET_ALL_NECESSARY, {{shutdown, 0}}};
    BOOL held = FALSE;
    PrivilegeCheck(token, &query, &held);
    CloseHandle(token);
    return held;
}

void DisableShutdownPrivilege()
{
    HANDLE token;
    OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES, &token);
    TOKEN_PRIVILEGES off = {1, {{{0, 0}, 0}}};
    LookupPrivilegeValueA(nullptr, "SeShutdownPrivilege", &off.Privileges[0].Luid);
    AdjustTokenPrivileges(token, FALSE, &off, 0, nullptr, nullptr);
    CloseHandle(token);
}

int g_restarts;
BOOL WINAPI FakeExitWindows(UINT flags, DWORD)
{
    // Counted only as the real call would succeed: with the shutdown privilege enabled.
    g_restarts += flags == (EWX_REBOOT | EWX_FORCE) && ShutdownPrivilegeEnabled();
    return TRUE;
}

struct RecordingLauncher : LfxLauncher
{
    int DestroyMainWindow() override
    {
        ++destroyed;
        return 1;
    }
    int CanInstall() override { return canInstall; }
    int destroyed = 0, canInstall = 1;
};
RecordingLauncher g_launcher;

// Sets the launcher up as PreInitializeLauncher and DetermineLauncherState leave it for a
// product tagged 'tag' in folder 'root' with the given setup.ini values and test settings.
void Prepare(const std::string& root, const char* tag, const std::vector<IniValue>& values,
             const std::string& testSettings = "")
{
    ReleaseSetup();
    FreeLibrary(GetModuleHandleA(Join(root, "Install\\VokSetup.dll").c_str()));
    RemoveTree(root);
    MakeProduct(root, tag, values);
    std::string ini = Join(root, "Install\\setup.ini");
    WriteTextFile(ini, ReadTextFile(ini) + "[VokSetupTest]\r\n" + testSettings);
    g_Env.Set("DEBUG", root.c_str(), false);
    g_LfxMain.m_pLauncher = &g_launcher;
    g_LfxMain.m_nDisks = 0;
    g_LfxMain.m_dwInstalled = 0;
    ASSERT_EQ(g_LfxMain.PreInitializeLauncher(), 1);
    ASSERT_EQ(g_LfxMain.DetermineLauncherState(), 1);
    g_pfnLfxGlobalMemoryStatus = FakeMemoryStatus;
    g_pfnLfxExitWindowsEx = FakeExitWindows;
    g_restarts = 0;
    g_launcher.destroyed = 0;
}
} // namespace

TEST(LfxChecks, MemoryThresholdsInUnsignedArithmetic)
{
    const uint32_t MiB = 1048576;
    struct Case
    {
        const char* ram;    // [SysCheck] RAM, null: missing
        const char* buffer; // [Buffer] Product, null: missing
        uint32_t totalPhys, availPage;
        std::vector<int> answers;
        std::vector<uint16_t> asked;
        int result;
    } cases[] = {
        {"64", nullptr, uint32_t(63.5 * MiB), 0, {}, {}, 1},
        {"64", nullptr, uint32_t(62.9 * MiB), 0, {IDYES}, {0x5008}, 1},
        {"64", "32", uint32_t(62.9 * MiB), 0, {IDNO}, {0x5008}, 0}, // the paging test is skipped
        {"0", nullptr, 4094u * MiB, 0, {IDNO}, {0x5008}, 0},        // bound: 4095 MiB
        {"0", nullptr, 4095u * MiB, 0, {}, {}, 1},
        {nullptr, "32", 0, 31 * MiB, {IDYES}, {0x5009}, 1},
        {nullptr, "32", 0, 32 * MiB, {}, {}, 1},
        {nullptr, nullptr, 0, 0, {}, {}, 1},
    };
    std::string root = Join(TestRoot(), "memory");
    for (const Case& c : cases)
    {
        SCOPED_TRACE(std::string(c.ram ? c.ram : "-") + "/" + (c.buffer ? c.buffer : "-") + " " +
                     std::to_string(c.totalPhys));
        Prepare(root, "Memory", {{"SysCheck", "RAM", c.ram}, {"Buffer", "Product", c.buffer}});
        g_memory = {};
        g_memory.dwTotalPhys = c.totalPhys;
        g_memory.dwAvailPageFile = c.availPage;
        ScriptedBoxes boxes(c.answers);
        EXPECT_EQ(g_LfxMain.CheckMemory(), c.result);
        ASSERT_EQ(boxes.Shown().size(), c.asked.size());
        for (size_t i = 0; i < c.asked.size(); ++i)
        {
            EXPECT_EQ(boxes.Shown()[i].caption, "Tarn");
            EXPECT_STREQ(boxes.Shown()[i].text.c_str(),
                         g_LfxMain.GetSetupString(c.asked[i]).c_str());
            EXPECT_EQ(boxes.Shown()[i].style, UINT(MB_YESNO | MB_ICONINFORMATION));
        }
    }
}

// A product launcher may refuse the installation: then nothing starts.
TEST(LfxActions, TheInstallerStartsOnlyWhenTheProductLauncherAgrees)
{
    std::string root = Join(TestRoot(), "actions");
    Prepare(root, "Actions", {{"Startup", "AppType", "Demo"}}); // no media check
    std::string data = Join(root, "Install");
    CopyInto(Join(ExeFolder(), "test_helper.exe"), data, "TarnSetup.exe");
    g_launcher.canInstall = 0;
    EXPECT_EQ(g_LfxMain.RunInstaller(), 0);
    g_launcher.canInstall = 1;
    EXPECT_EQ(g_LfxMain.RunInstaller(), 1);
    for (int i = 0; i < 100 && ReadTextFile(Join(data, "TarnSetup.exe.log")).empty(); ++i)
        Sleep(50);
    EXPECT_EQ(ReadTextFile(Join(data, "TarnSetup.exe.log")).substr(0, 6), "args=|");
}

// The uninstaller the registry names is started with the whole string as its file name
// (the launcher's walk sees it run and the window close): switches after the program are
// part of that name, the shell finds no such file, and the launcher stays open without a
// box.
TEST(LfxActions, UninstallStringWithSwitchesStartsNothing)
{
    std::string root = Join(TestRoot(), "uninstall");
    Prepare(root, "Uninstall", {});
    std::string folder = Join(root, "Program Files");
    std::string uninstaller = Join(folder, "uninst.exe");
    CopyInto(Join(ExeFolder(), "test_helper.exe"), folder, "uninst.exe");
    SetReg(ProductKey("Uninstall"), "UninstallString", uninstaller + " /S");
    ScriptedBoxes boxes({IDOK});
    EXPECT_EQ(g_LfxMain.RunUninstaller(), 0);
    EXPECT_EQ(g_launcher.destroyed, 0);
    EXPECT_TRUE(boxes.Shown().empty());
    EXPECT_EQ(ReadTextFile(uninstaller + ".log"), "");
    DeleteRegTree(ProductKey("Uninstall"));
}

// A check that says no stops the launch: the game is not started. A restart for DirectX
// closes the launcher instead of starting the game.
TEST(LfxActions, LaunchStopsWhenACheckSaysNo)
{
    struct
    {
        const char* name;
        const char* ram;
        std::string settings; // [VokSetupTest]
        std::vector<int> answers;
        int result, restarts;
    } cases[] = {
        {"memory question declined", "64", "DirectXState=1\r\n", {IDNO}, 0, 0},
        {"restart for DirectX",
         "32",
         "DirectXState=2\r\nDirectXInstall=1\r\n",
         {IDYES, IDYES},
         1,
         1},
        {"both checks pass", "32", "DirectXState=1\r\n", {}, 1, 0},
    };
    std::string root = Join(TestRoot(), "launch");
    for (const auto& c : cases)
    {
        SCOPED_TRACE(c.name);
        Prepare(root, "Launch", {{"SysCheck", "RAM", c.ram}}, c.settings);
        fs::create_directories(Join(root, "DirectX"));
        DisableShutdownPrivilege(); // the restart must ask for it
        g_memory = {};
        g_memory.dwTotalPhys = uint32_t(62.9 * 1048576);
        g_memory.dwAvailPageFile = 0x7FFFFFFF;
        std::string game = Join(root, "Game");
        CopyInto(Join(ExeFolder(), "test_helper.exe"), game, "Tarn.exe");
        g_Env.Set("ProductDir", game.c_str(), true);
        g_Env.Set("ProductExe", Join(game, "Tarn.exe").c_str(), true);
        ScriptedBoxes boxes(c.answers);
        EXPECT_EQ(g_LfxMain.LaunchProduct(0, true), c.result);
        EXPECT_EQ(boxes.Shown().size(), c.answers.size());
        EXPECT_EQ(g_restarts, c.restarts);
        EXPECT_EQ(g_launcher.destroyed, c.restarts);
        // Waited for: the record is there when the game was started.
        bool started = c.result == 1 && c.restarts == 0;
        EXPECT_EQ(ReadTextFile(Join(game, "Tarn.exe.log")),
                  started ? "args=|cwd=" + game + "\n" : "");
    }
}
