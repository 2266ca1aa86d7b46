// End-to-end tests of the launcher's configuration, state, hand-over and single-instance
// rule: the real Launcher.exe under Wine, real product folders, registry values, mutexes
// held by a helper process, and the real message boxes.
#include "harness/wine_Harness.h"
#include "support/assert_Text.h"
#include "support/demo_Product.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <future>
#include <string>
#include <vector>

using namespace harness;
using demo::HasLine;
using demo::Ini;
using demo::Launch;
using demo::LaunchIn;
using demo::Lines;

namespace
{
std::string Fresh(const std::string& name)
{
    std::string folder = Join(TestRoot(), name);
    RemoveTree(folder);
    return folder;
}

// Holds named mutexes in a process of its own until destroyed.
class MutexHolder
{
  public:
    explicit MutexHolder(const std::string& names)
    {
        m_folder = Fresh("holder-" + std::to_string(++s_count));
        CopyInto(Join(ExeFolder(), "test_helper.exe"), m_folder, "holder.exe");
        m_program = Join(m_folder, "holder.exe");
        m_process.Start(m_program, "-HOLD=" + names);
        for (int i = 0; i < 200 && GetFileAttributesA((m_program + ".ready").c_str()) ==
                                       INVALID_FILE_ATTRIBUTES;
             ++i)
            Sleep(25);
    }
    ~MutexHolder()
    {
        WriteTextFile(m_program + ".release", "");
        WaitForSingleObject(m_process.Handle(), 10000);
    }

  private:
    static inline int s_count = 0;
    std::string m_folder, m_program;
    Process m_process;
};
} // namespace

TEST(LauncherConfiguration, StartupTraceOfTheDemoConfigurationIsExact)
{
    std::string folder = Fresh("configuration");
    Ini ini("Configuration");
    demo::MakeProduct(folder, ini);
    DeleteRegTree(ini.RegistryKey());
    RunResult r = LaunchIn(Join(folder, "Launcher.exe"), "-DISABLEMUTEX -x=\"a b\"", folder);
    EXPECT_EQ(r.exitCode, 0u);
    EXPECT_TRUE(r.boxes.empty());
    // A prefix and its message reach the debugger as two texts.
    ASSERT_GE(r.traces.size(), 6u);
    EXPECT_EQ(r.traces[4] + "|" + r.traces[5], "CltApp: |Running application...\n");
    EXPECT_EQ(r.traces[r.traces.size() - 2] + "|" + r.traces.back(), "CltApp: |Destruction\n");
    const std::string data = folder + "\\Install";
    auto ini_ =
        [](const char* kind, const char* section, const char* key, const std::string& result)
    {
        return std::string("LfxMain: \tGet") + kind + " - Section [" + section + "] Key [" + key +
               "] - " + result;
    };
    std::vector<std::string> expected = {
        "WinMain: Initializing CltWinApp", "DISABLEMUTEX is empty.", "X is [a b]",
        "ModuleFileName is [" + folder + "\\Launcher.exe]", "CltApp: Running application...",
        "LfxMain: Init started.", "LfxMain: PreIninitializeLauncher started.",
        "LfxMain: m_dwOptions is [0x00000000]", "LauncherDir is [" + folder + "]",
        "Anchor is [Install]", "DataDir is [" + data + "]", "IniPath is [" + data + "\\setup.ini]",
        ini_("IniString", "Registry", "Company", "Success [Launcher Tests]"),
        ini_("IniString", "Registry", "Product", "Success [Configuration]"),
        ini_("IniString", "Registry", "Version", "Success [1.0]"),
        "RegistryFolder is [Software\\Launcher Tests\\Configuration\\1.0]",
        ini_("IniDWORD", "Startup", "InstallDX", "Success [1]"),
        ini_("IniString", "Startup", "AppType", "Success [Retail]"), "InstallDir is empty.",
        ini_("IniString", "Files", "Launcher", "Success [Launcher.exe]"),
        "LauncherName is [Launcher.exe]",
        ini_("IniString", "Startup", "DirectXVer", "Success [7.0]"), "DirectXVersion is [7.0]",
        ini_("IniString", "Url", "DirectX", "Success [https://directx.example]"),
        "DirectXUrl is [https://directx.example]",
        ini_("IniDWORD", "Startup", "Disks", "Success [1]"), "LfxMain: m_nDisks is [1]",
        ini_("IniString", "Files", "SetupDll", "Success [VokSetup.dll]"),
        "LfxMain: strSetupDll is [VokSetup.dll]", "ProductName is [Tarn]", "MediaName is [Tarn]",
        "Language is [INT]", "CharacterSet is [DEFAULT_CHARSET]",
        "LfxMain: PreInitializeLauncher completed.", "LfxMain: DetermineLauncherState started.",
        "SourceDir is [" + folder + "]", "LfxMain: m_dwState is [2]",
        "LfxMain: CheckMutex started.", "LfxMain: PreInitializePages started.",
        "LfxMain: PreCreateLauncher started.",
        "LfxMain: Running launcher...LfxMain: Page [INSTALL] shown.",
        // The window, asked to close, closes the help first.
        "LfxMain: \tGetIniString - Section [Documentation] Key [Help] - Fail",
        "LfxMain: Destruction completed.", "CltApp: Destruction"};
    EXPECT_EQ(Lines(r), expected);
}

TEST(LauncherConfiguration, FoldersFromTheSwitchesAndTheDriveRoot)
{
    struct Case
    {
        const char* name;
        std::string productFolder; // where the launcher and its data lie
        std::string anchor;        // data folder name below it
        std::string program;       // the launcher that is started
        std::string arguments;
        std::string workingFolder;
        std::vector<std::string> lines;
    };
    std::string plain = Fresh("folders-plain"), data = Fresh("folders-data"),
                top = Fresh("folders-top"), debug = Fresh("folders-debug");
    std::vector<Case> cases = {
        {"drive root",
         "R:\\",
         "Install",
         "R:\\Launcher.exe",
         "-DISABLEMUTEX",
         "",
         {"LauncherDir is [R:\\]", "DataDir is [R:\\Install]"}},
        {"anchor with a value",
         data,
         "Data",
         Join(data, "Launcher.exe"),
         "-DISABLEMUTEX -ANCHOR=Data",
         "",
         {"ANCHOR is [Data]", "DataDir is [" + data + "\\Data]"}},
        {"anchor without a value",
         top,
         "",
         Join(top, "Launcher.exe"),
         "-DISABLEMUTEX -ANCHOR",
         "",
         {"ANCHOR is empty.", "DataDir is [" + top + "]"}},
        {"debug with a folder",
         debug,
         "Install",
         Join(plain, "Launcher.exe"),
         "-DISABLEMUTEX -DEBUG=" + debug,
         "",
         {"LfxMain: m_dwOptions is [0x0000000a]", "LauncherDir is [" + debug + "]"}},
        {"debug without a value",
         debug,
         "Install",
         Join(plain, "Launcher.exe"),
         "-DISABLEMUTEX -DEBUG",
         debug,
         {"DEBUG is empty.", "LauncherDir is [" + debug + "]",
          "DataDir is [" + debug + "\\Install]"}},
    };
    CopyInto(Join(ExeFolder(), "Launcher.exe"), plain);
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        Ini ini("Folders");
        demo::MakeProduct(c.productFolder, ini, c.anchor);
        RunResult r = LaunchIn(c.program, c.arguments, c.workingFolder);
        EXPECT_EQ(r.exitCode, 0u);
        EXPECT_TRUE(r.boxes.empty());
        for (const std::string& line : c.lines)
            EXPECT_TRUE(HasLine(r, line)) << line;
        EXPECT_TRUE(HasLine(r, "LfxMain: PreInitializeLauncher completed."));
    }
    RemoveTree("R:\\Install");
    DeleteFileA("R:\\Launcher.exe");
}

TEST(LauncherState, InstalledStateSourceDirAndHandOver)
{
    std::string media = Fresh("state-media"), installed = Fresh("state-installed");
    Ini ini("State");
    demo::MakeProduct(media, ini);
    std::string key = ini.RegistryKey();
    std::string record = Join(installed, "Launcher.exe.log");
    struct Case
    {
        const char* name;
        std::string installPath;
        int launcherInstalled; // 0 none, 1 a program that records its start, 2 no program
        std::string sourceDir;
        std::string arguments;
        std::vector<int> answers;
        bool handsOver;
        std::vector<std::string> lines;
    } cases[] = {
        {"installed without a path",
         "",
         true,
         "E:\\",
         "-DISABLEMUTEX",
         {},
         false,
         {"InstallDir is empty.", "SourceDir is [" + media + "]", "LfxMain: m_dwState is [2]"}},
        {"from the media",
         installed,
         true,
         "E:\\",
         "-DISABLEMUTEX",
         {},
         true,
         {"LfxMain: Comparing LauncherDir [" + media + "] and InstallDir [" + installed + "].",
          "LfxMain: Launcher is running from CD. Transferring to HD."}},
        {"switch Y",
         installed,
         true,
         "E:\\",
         "-DISABLEMUTEX -Y",
         {},
         false,
         {"LfxMain: Launcher is running from HD or in debug mode.", "SourceDir is [E:\\]",
          "LfxMain: m_dwState is [1]"}},
        {"switch DEBUG",
         installed,
         true,
         "E:",
         "-DISABLEMUTEX -DEBUG",
         {},
         false,
         {"SourceDir is [E:\\]", "LfxMain: m_dwState is [1]"}},
        {"switch V",
         installed,
         true,
         "D:\\Setup\\",
         "-V",
         {IDOK},
         false,
         {"SourceDir is [D:\\Setup]", "LfxMain: m_dwState is [1]"}},
        {"installed launcher missing",
         installed,
         false,
         "D:\\Setup",
         "-DISABLEMUTEX",
         {},
         false,
         {"SourceDir is [D:\\Setup]", "LfxMain: m_dwState is [1]"}},
        {"uninstall requested",
         installed,
         false,
         "E:\\",
         "-DISABLEMUTEX -UNINSTALL",
         {},
         false,
         {"LfxMain: m_dwState is [3]"}},
        {"uninstall requested with I: the window, not the game",
         installed,
         false,
         "E:\\",
         "-DISABLEMUTEX -I -UNINSTALL",
         {},
         false,
         {"LfxMain: m_dwState is [3]",
          "LfxMain: Running launcher...LfxMain: \tGetIniString - Section [Documentation] Key "
          "[Help] - Fail"}},
        {"installed launcher that cannot be started",
         installed,
         2,
         "E:\\",
         "-DISABLEMUTEX",
         {IDOK},
         true,
         {"LfxMain: Launcher is running from CD. Transferring to HD."}},
        {"same folder in another case",
         media,
         true,
         "E:\\",
         "-DISABLEMUTEX",
         {},
         false,
         {"LfxMain: Launcher is running from HD or in debug mode."}},
        {"same folder with a trailing backslash",
         media + "\\",
         true,
         "E:\\",
         "-DISABLEMUTEX",
         {},
         false,
         {"LfxMain: Launcher is running from HD or in debug mode."}},
        {"no Source Dir",
         installed,
         false,
         "",
         "-DISABLEMUTEX",
         {},
         false,
         {"SourceDir is [" + installed + "]", "LfxMain: m_dwState is [1]"}},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        RemoveTree(installed);
        if (c.launcherInstalled == 1)
            CopyInto(Join(ExeFolder(), "test_helper.exe"), installed, "Launcher.exe");
        if (c.launcherInstalled == 2)
            WriteTextFile(Join(installed, "Launcher.exe"), "not a program");
        DeleteRegTree(key);
        SetRegDword(key, "Installed", 2);
        std::string installPath = c.installPath == media ? media : c.installPath;
        if (std::string(c.name) == "same folder in another case")
        {
            installPath = media;
            std::transform(installPath.begin(), installPath.end(), installPath.begin(), ::tolower);
        }
        SetRegString(key, "Install Path", installPath);
        if (!c.sourceDir.empty()) SetRegString(key, "Source Dir", c.sourceDir);

        RunResult r = LaunchIn(Join(media, "Launcher.exe"), c.arguments, media, c.answers);
        EXPECT_EQ(r.exitCode, 0u);
        EXPECT_EQ(r.boxes.size(), c.answers.size());
        for (const std::string& line : c.lines)
            EXPECT_TRUE(HasLine(r, line)) << line;
        EXPECT_EQ(HasLine(r, "LfxMain: PreInitializePages started."), !c.handsOver);
        if (c.launcherInstalled == 2)
        {
            // One box, the launcher's own, and the launcher ends.
            ASSERT_EQ(r.boxes.size(), 1u);
            EXPECT_EQ(r.boxes[0].title, "Tarn");
            EXPECT_EQ(r.boxes[0].text,
                      "The program could not be started.\n\nPlease reinstall Tarn.");
            EXPECT_EQ(StyleOf(r.boxes[0]), UINT(MB_ICONHAND));
            EXPECT_EQ(Lines(r).back(), "CltApp: Destruction");
        }
        else if (c.handsOver)
        {
            // The installed launcher starts with an empty command line in its own folder.
            for (int i = 0; i < 100 && ReadTextFile(record).empty(); ++i)
                Sleep(50);
            EXPECT_EQ(ReadTextFile(record), "args=|cwd=" + installed + "\n");
            EXPECT_EQ(Lines(r).back(), "CltApp: Destruction");
        }
        else if (c.launcherInstalled == 1)
        {
            EXPECT_EQ(ReadTextFile(record), "");
        }
    }
    DeleteRegTree(key);
}

TEST(LauncherState, InstalledOneEndsSilently)
{
    std::string folder = Fresh("installed-one");
    Ini ini("InstalledOne");
    demo::MakeProduct(folder, ini);
    DeleteRegTree(ini.RegistryKey());
    SetRegDword(ini.RegistryKey(), "Installed", 1);
    RunResult r = Launch(Join(folder, "Launcher.exe"), "-V");
    EXPECT_EQ(r.exitCode, 0u);
    EXPECT_TRUE(r.boxes.empty());
    std::vector<std::string> lines = Lines(r);
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[lines.size() - 3],
              "RegistryFolder is [Software\\Launcher Tests\\InstalledOne\\1.0]");
    EXPECT_EQ(lines[lines.size() - 2], "LfxMain: Destruction completed.");
    DeleteRegTree(ini.RegistryKey());
}

TEST(LauncherSingleInstance, AnotherLauncherOrTheGameEndsStartUp)
{
    std::string folder = Fresh("single");
    Ini ini("Single");
    demo::MakeProduct(folder, ini);
    DeleteRegTree(ini.RegistryKey());
    std::string launcherMutex = ini.Get("Mutex", "Launcher"),
                gameMutex = ini.Get("Mutex", "Product");
    struct Case
    {
        std::string held;
        std::string lastLine;
    } cases[] = {
        {launcherMutex, "LfxMain: Launcher is already running."},
        {gameMutex, "LfxMain: Game is already running."},
        {launcherMutex + "," + gameMutex, "LfxMain: Game is already running."},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.held);
        MutexHolder holder(c.held);
        RunResult r = Launch(Join(folder, "Launcher.exe"), "-V");
        EXPECT_EQ(r.exitCode, 0u);
        EXPECT_TRUE(r.boxes.empty()); // the version box never comes
        std::vector<std::string> lines = Lines(r);
        ASSERT_GE(lines.size(), 3u);
        EXPECT_EQ(lines[lines.size() - 3], c.lastLine);
        EXPECT_FALSE(HasLine(r, "LfxMain: PreInitializePages started."));
    }
    // Once nothing holds them, the launcher goes on.
    RunResult free = Launch(Join(folder, "Launcher.exe"), "");
    EXPECT_TRUE(HasLine(free, "LfxMain: Launcher, Game are not running."));
}

TEST(LauncherSingleInstance, TwentyLaunchersAtOnceLeaveOne)
{
    std::string folder = Fresh("twenty");
    Ini ini("Twenty");
    demo::MakeProduct(folder, ini);
    DeleteRegTree(ini.RegistryKey());
    // Each shows its version box only after it has taken the launcher mutex, and holds
    // the mutex while the box is open: nobody answers until all others have ended.
    std::vector<std::future<RunResult>> runs;
    for (int i = 0; i < 20; ++i)
        runs.push_back(std::async(std::launch::async,
                                  [&]
                                  {
                                      RunOptions run;
                                      run.program = Join(folder, "Launcher.exe");
                                      run.arguments = "-V";
                                      run.leaveBoxesToUser = true;
                                      run.timeoutMs = 60000;
                                      return RunProgram(run);
                                  }));
    auto ended = [&]
    {
        return std::count_if(
            runs.begin(), runs.end(),
            [](auto& f)
            { return f.wait_for(std::chrono::seconds(0)) == std::future_status::ready; });
    };
    for (int i = 0; i < 600 && ended() < 19; ++i)
        Sleep(100);
    EXPECT_EQ(ended(), 19);
    HWND box = nullptr;
    for (int i = 0; i < 100 && !(box = FindMessageBox("Tarn")); ++i)
        Sleep(50);
    ASSERT_NE(box, nullptr);
    PostMessageA(GetDlgItem(box, IDOK), BM_CLICK, 0, 0);

    // Launchers that start together also see each other's momentary test of the game's
    // mutex, so a refused launcher reports either a running launcher or a running game.
    int running = 0, refused = 0;
    for (auto& f : runs)
    {
        RunResult r = f.get();
        EXPECT_EQ(r.exitCode, 0u);
        EXPECT_FALSE(r.timedOut);
        std::vector<std::string> lines = Lines(r);
        running += HasLine(r, "LfxMain: Launcher, Game are not running.");
        bool refusedHere = HasLine(r, "LfxMain: Launcher is already running.") ||
                           HasLine(r, "LfxMain: Game is already running.");
        refused += refusedHere;
        bool ran = HasLine(r, "LfxMain: Launcher, Game are not running.");
        if (!refusedHere && !ran && lines.size() > 3)
            ADD_FAILURE() << "last lines: " << lines[lines.size() - 3];
    }
    EXPECT_EQ(running, 1);
    EXPECT_EQ(refused, 19);
}

TEST(LauncherConfiguration, FatalConditionsShowTheAssertionBox)
{
    const std::string lfx = "FrameWork/_lfx/Source/lfx_System";
    const std::string env = "FrameWork/_cult/Source/clt_Environment";
    const int envLine = expect::SourceLine("FrameWork/_cult/Source/clt_Environment.cpp",
                                           "CLT_ASSERT(!strSecond.empty())");
    ASSERT_GT(envLine, 0);
    struct Case
    {
        const char* name;
        void (*change)(Ini&, const std::string& folder);
        std::string text;
    } cases[] = {
        {"no data folder", [](Ini&, const std::string& f) { RemoveTree(Join(f, "Install")); },
         expect::AssertText("clt_IsDirectoryPresent(g_Env[\"DataDir\"])", lfx, 173)},
        {"no setup.ini",
         [](Ini&, const std::string& f) { DeleteFileA(Join(f, "Install\\setup.ini").c_str()); },
         expect::AssertText("clt_IsFilePresent(g_Env[\"IniPath\"])", lfx, 174)},
        {"setup library missing",
         [](Ini& i, const std::string&) { i.Set("Files", "SetupDll", "Missing.dll"); },
         expect::AssertText("m_hSetupDll!=0", lfx, 227)},
        {"setup library without the export",
         [](Ini& i, const std::string& f)
         {
             i.Set("Files", "SetupDll", "NoExport.dll");
             CopyInto(Join(ExeFolder(), "NoExport.dll"), Join(f, "Install"));
         },
         expect::AssertText("VokSetup_GetSetup!=0", lfx, 230)},
        {"setup object refused",
         [](Ini& i, const std::string& f)
         {
             i.Set("Files", "SetupDll", "RefusingSetup.dll");
             CopyInto(Join(ExeFolder(), "RefusingSetup.dll"), Join(f, "Install"));
         },
         expect::AssertText("VokSetup_GetSetup(g_Env[\"DataDir\"],&m_pVokSetup)", lfx, 231)},
        {"launcher mutex empty", [](Ini& i, const std::string&) { i.Set("Mutex", "Launcher", ""); },
         expect::AssertText("!strLauncherMutex.empty()", lfx, 336)},
        {"game mutex missing", [](Ini& i, const std::string&) { i.Remove("Mutex", "Product"); },
         expect::AssertText("!strGameMutex.empty()", lfx, 337)},
        {"launcher name missing", [](Ini& i, const std::string&) { i.Remove("Files", "Launcher"); },
         expect::AssertText("!strSecond.empty()", env, envLine)},
        {"DirectX version missing",
         [](Ini& i, const std::string&) { i.Remove("Startup", "DirectXVer"); },
         expect::AssertText("!strSecond.empty()", env, envLine)},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        std::string folder = Fresh("fatal");
        Ini ini("Fatal");
        demo::MakeProduct(folder, ini);
        c.change(ini, folder);
        if (GetFileAttributesA(Join(folder, "Install\\setup.ini").c_str()) !=
            INVALID_FILE_ATTRIBUTES)
            WriteTextFile(Join(folder, "Install\\setup.ini"), ini.Text());
        RunResult r = LaunchIn(Join(folder, "Launcher.exe"), "", folder, {IDCANCEL});
        EXPECT_EQ(r.exitCode, 0u);
        ASSERT_EQ(r.boxes.size(), 1u);
        EXPECT_EQ(r.boxes[0].title, "Guru meditation failure!");
        EXPECT_EQ(r.boxes[0].text, c.text);
        EXPECT_EQ(StyleOf(r.boxes[0]), UINT(MB_RETRYCANCEL | MB_ICONHAND));
        EXPECT_FALSE(HasLine(r, "LfxMain: Destruction completed."));
    }
}

TEST(LauncherConfiguration, LockedSetupIniCountsAsMissing)
{
    std::string folder = Fresh("locked");
    Ini ini("Locked");
    demo::MakeProduct(folder, ini);
    HANDLE lock = CreateFileA(Join(folder, "Install\\setup.ini").c_str(), GENERIC_READ, 0, nullptr,
                              OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    RunResult r = LaunchIn(Join(folder, "Launcher.exe"), "", folder, {IDCANCEL});
    CloseHandle(lock);
    ASSERT_EQ(r.boxes.size(), 1u);
    EXPECT_EQ(r.boxes[0].text, expect::AssertText("clt_IsFilePresent(g_Env[\"IniPath\"])",
                                                  "FrameWork/_lfx/Source/lfx_System", 174));
    EXPECT_EQ(r.exitCode, 0u);
}

TEST(LauncherVersion, SwitchVShowsTheVersionText)
{
    std::string folder = Fresh("version");
    Ini ini("Version");
    demo::MakeProduct(folder, ini);
    DeleteRegTree(ini.RegistryKey());
    RunResult r = LaunchIn(Join(folder, "Launcher.exe"), "-V", folder, {IDOK});
    EXPECT_EQ(r.exitCode, 0u);
    ASSERT_EQ(r.boxes.size(), 1u);
    EXPECT_EQ(r.boxes[0].title, "Tarn");
    EXPECT_EQ(StyleOf(r.boxes[0]), UINT(MB_OK));
    EXPECT_EQ(r.boxes[0].text, "Launcher.exe (Build 0003)\n\n"
                               "LfxMain        \t: 1.03.0114 (2/12/02 5:05p)\n"
                               "CTarnLauncher  \t: 1.00.0024 (2/22/02 5:26p)\n"
                               "\nPages:\n"
                               "\tLAUNCH\tINT\n\tINSTALL\t\n\tHELP\t\n\tOPTIONS\t\n");
    EXPECT_TRUE(HasLine(r, "LfxMain: PreCreateLauncher started."));
    EXPECT_FALSE(HasLine(r, "LfxMain: Running launcher..."));
}
