// End-to-end tests of the launcher's configuration, state, hand-over and single-instance
// rule: the real Launcher.exe under Wine, real product folders, registry values, mutexes
// held by a helper process, and the real message boxes.
#include "harness/wine_Harness.h"
#include "support/assert_Text.h"
#include "support/demo_Product.h"

#include <gtest/gtest.h>

#include <tlhelp32.h>

#include <algorithm>
#include <functional>
#include <future>
#include <memory>
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

namespace
{
struct Box
{
    std::string title, text;
    UINT style;
};

// Wine's settings for the programs named Launcher.exe: "Version" is the Windows they see.
const char kLauncherSettings[] = "Software\\Wine\\AppDefaults\\Launcher.exe";

// A product folder of its own for one row: laid out by Make (after the row has changed its
// setup.ini), with the launcher at 'program', started in 'cwd'.
struct Product
{
    explicit Product(const std::string& name)
        : folder(Fresh(name)), installed(Fresh(name + "-installed")), ini(name),
          program(Join(folder, "Launcher.exe")), cwd(folder)
    {
        DeleteRegTree(ini.RegistryKey());
    }
    ~Product()
    {
        if (lock) CloseHandle(lock);
        DeleteRegTree(ini.RegistryKey());
        RegDeleteKeyValueA(HKEY_CURRENT_USER, kLauncherSettings, "Version");
    }
    void Make(const std::string& anchor = "Install") { demo::MakeProduct(folder, ini, anchor); }
    // Registered as installed at 'path' (with Source Dir 'source' unless empty); the
    // installed launcher: 1 a recorder, 2 a file that is no program, 0 none.
    void Installed(const std::string& path, const std::string& source, int launcher)
    {
        if (launcher == 1)
            CopyInto(Join(ExeFolder(), "test_helper.exe"), installed, "Launcher.exe");
        if (launcher == 2) WriteTextFile(Join(installed, "Launcher.exe"), "not a program");
        SetRegDword(ini.RegistryKey(), "Installed", 2);
        SetRegString(ini.RegistryKey(), "Install Path", path);
        if (!source.empty()) SetRegString(ini.RegistryKey(), "Source Dir", source);
    }
    std::string folder, installed;
    demo::Ini ini;
    std::string program, cwd;
    std::string record = Join(installed, "Launcher.exe.log"); // what "recorded" reads
    std::unique_ptr<MutexHolder> holder;
    HANDLE lock = nullptr;
};

const std::string kLfx = "FrameWork/_lfx/Source/lfx_System";
const char kGuru[] = "Guru meditation failure!";
const UINT kGuruStyle = MB_RETRYCANCEL | MB_ICONHAND;
const std::string kRunning = "LfxMain: PreInitializePages started.";
const std::string kHandOver = "LfxMain: Launcher is running from CD. Transferring to HD.";
const std::string kFromHd = "LfxMain: Launcher is running from HD or in debug mode.";

Box Fatal(const std::string& expression, const std::string& file, int line)
{
    return {kGuru, expect::AssertText(expression, file, line), kGuruStyle};
}

const char* const kGroups[] = {"where", "state", "instances", "fatal", "media", "directx"};

// One row per start of the launcher: how its product is laid out and registered, its
// switches, the boxes it shows (answered in order), the trace lines that tell the case apart
// ("-" before a line: it must not be there; "=": the last step before the destruction), and
// what the installed launcher recorded ("-": not looked at). The rows run in groups, by the
// word before the colon in their names.
void RunRows(const std::string& group)
{
    const int envLine = expect::SourceLine("FrameWork/_cult/Source/clt_Environment.cpp",
                                           "CLT_ASSERT(!strSecond.empty())");
    ASSERT_GT(envLine, 0);
    const Box emptyValue =
        Fatal("!strSecond.empty()", "FrameWork/_cult/Source/clt_Environment", envLine);
    const Box noIni = Fatal("clt_IsFilePresent(g_Env[\"IniPath\"])", kLfx, 174);
    const std::string version = "Launcher.exe (Build 0003)\n\n"
                                "LfxMain        \t: 1.03.0114 (2/12/02 5:05p)\n"
                                "CTarnLauncher  \t: 1.00.0024 (2/22/02 5:26p)\n"
                                "\nPages:\n"
                                "\tLAUNCH\tINT\n\tINSTALL\t\n\tHELP\t\n\tOPTIONS\t\n";
    // A row: its name, how the product is laid out, the switches, the trace lines ("|"
    // between them), what the installed launcher recorded; then each box and its answer.
    struct Row
    {
        Row(const char* n, std::function<void(Product&)> p, std::string a, std::string l,
            std::string r = "-")
            : name(n), prepare(std::move(p)), args(std::move(a)), lines(std::move(l)),
              recorded(std::move(r))
        {
        }
        Row&& Box(const ::Box& box, int answer) &&
        {
            boxes.push_back(box);
            answers.push_back(answer);
            return std::move(*this);
        }
        const char* name;
        std::function<void(Product&)> prepare;
        std::string args, lines, recorded;
        std::vector<int> answers;
        std::vector<::Box> boxes;
    };
    auto installed = [](std::string path, std::string source, int launcher)
    {
        return [=](Product& p)
        {
            p.Make();
            p.Installed(path == "installed" ? p.installed
                        : path == "media\\" ? p.folder + "\\"
                                            : path,
                        source, launcher);
        };
    };
    auto changed = [](std::function<void(Product&)> change)
    {
        return [=](Product& p)
        {
            change(p);
            p.Make();
        };
    };
    auto holding = [](std::vector<const char*> keys)
    {
        return [=](Product& p)
        {
            p.Make();
            std::string names;
            for (const char* key : keys)
                names += (names.empty() ? "" : ",") + p.ini.Get("Mutex", key);
            p.holder = std::make_unique<MutexHolder>(names);
        };
    };
    auto elsewhere = [](std::string cwd)
    {
        return [=](Product& p)
        {
            p.Make();
            p.program = Join(Fresh("plain"), "Launcher.exe");
            CopyInto(Join(ExeFolder(), "Launcher.exe"), Join(TestRoot(), "plain"));
            if (cwd.empty()) p.cwd = "";
        };
    };
    auto make = [](Product& p) { p.Make(); };
    const std::string state1 = "LfxMain: m_dwState is [1]|" + kRunning,
                      notRunning = "|-" + kRunning;
    const ::Box cannotStart = {
        "Tarn", "The program could not be started.\n\nPlease reinstall Tarn.", MB_ICONHAND};
    std::vector<Row> rows;
    // Where the launcher and its data folder are.
    rows.push_back(Row(
        "where: drive root",
        [](Product& p)
        {
            p.folder = "R:\\", p.program = "R:\\Launcher.exe", p.cwd = "";
            p.Make();
        },
        "-DISABLEMUTEX", "LauncherDir is [R:\\]|DataDir is [R:\\Install]"));
    rows.push_back(Row(
        "where: anchor with a value", [](Product& p) { p.Make("Data"); },
        "-DISABLEMUTEX -ANCHOR=Data", "ANCHOR is [Data]|DataDir is [$\\Data]"));
    rows.push_back(Row(
        "where: anchor without a value", [](Product& p) { p.Make(""); }, "-DISABLEMUTEX -ANCHOR",
        "ANCHOR is empty.|DataDir is [$]"));
    rows.push_back(Row("where: debug with a folder", elsewhere(""), "-DISABLEMUTEX -DEBUG=$",
                       "LfxMain: m_dwOptions is [0x0000000a]|LauncherDir is [$]"));
    rows.push_back(Row("where: debug without a value", elsewhere("product"), "-DISABLEMUTEX -DEBUG",
                       "DEBUG is empty.|LauncherDir is [$]|DataDir is [$\\Install]"));
    // The state, the source folder and the hand-over to the installed launcher.
    rows.push_back(
        Row("state: installed without a path", installed("", "E:\\", 1), "-DISABLEMUTEX",
            "InstallDir is empty.|SourceDir is [$]|LfxMain: m_dwState is [2]|" + kRunning, ""));
    rows.push_back(Row("state: from the media", installed("installed", "E:\\", 1), "-DISABLEMUTEX",
                       "LfxMain: Comparing LauncherDir [$] and InstallDir [$-installed].|" +
                           kHandOver + notRunning,
                       "args=|cwd=$-installed\n"));
    rows.push_back(Row("state: switch Y", installed("installed", "E:\\", 1), "-DISABLEMUTEX -Y",
                       kFromHd + "|SourceDir is [E:\\]|" + state1 +
                           "|LfxMain: strFilProduct is [Tarn.exe].|LfxMain: strFilDir is [Game].",
                       ""));
    rows.push_back(Row("state: switch DEBUG", installed("installed", "E:", 1),
                       "-DISABLEMUTEX -DEBUG", "SourceDir is [E:\\]|" + state1, ""));
    rows.push_back(Row("state: switch V", installed("installed", "D:\\Setup\\", 1), "-V",
                       "SourceDir is [D:\\Setup]|LfxMain: PreCreateLauncher started.|" + state1, "")
                       .Box({"Tarn", version, MB_OK}, IDOK));
    rows.push_back(Row("state: installed launcher missing", installed("installed", "D:\\Setup", 0),
                       "-DISABLEMUTEX", "SourceDir is [D:\\Setup]|" + state1));
    rows.push_back(Row("state: uninstall requested", installed("installed", "E:\\", 0),
                       "-DISABLEMUTEX -UNINSTALL", "LfxMain: m_dwState is [3]|" + kRunning));
    rows.push_back(Row("state: uninstall requested with I: the window, not the game",
                       installed("installed", "E:\\", 0), "-DISABLEMUTEX -I -UNINSTALL",
                       "LfxMain: m_dwState is [3]|" + kRunning +
                           "|LfxMain: Running launcher...LfxMain: \tGetIniString - Section "
                           "[Documentation] Key [Help] - Fail"));
    rows.push_back(Row("state: installed launcher that cannot be started",
                       installed("installed", "E:\\", 2), "-DISABLEMUTEX", kHandOver + notRunning)
                       .Box(cannotStart, IDOK));
    rows.push_back(Row(
        "state: same folder in another case",
        [](Product& p)
        {
            p.Make();
            std::string lower = p.folder;
            std::transform(lower.begin(), lower.end(), lower.begin(), ::tolower);
            p.Installed(lower, "E:\\", 0);
        },
        "-DISABLEMUTEX", kFromHd + "|" + kRunning));
    rows.push_back(Row("state: same folder with a trailing backslash",
                       installed("media\\", "E:\\", 0), "-DISABLEMUTEX", kFromHd + "|" + kRunning));
    rows.push_back(Row("state: no Source Dir", installed("installed", "", 0), "-DISABLEMUTEX",
                       "SourceDir is [$-installed]|" + state1));
    rows.push_back(Row(
        "state: installed value 1: nothing more",
        [](Product& p)
        {
            p.Make();
            SetRegDword(p.ini.RegistryKey(), "Installed", 1);
        },
        "-V", "=RegistryFolder is [Software\\Launcher Tests\\row\\1.0]"));
    // One launcher at a time, and none while the game runs.
    rows.push_back(Row("instances: launcher running", holding({"Launcher"}), "-V",
                       "=LfxMain: Launcher is already running." + notRunning));
    rows.push_back(Row("instances: game running", holding({"Product"}), "-V",
                       "=LfxMain: Game is already running." + notRunning));
    rows.push_back(Row("instances: launcher and game running", holding({"Launcher", "Product"}),
                       "-V", "=LfxMain: Game is already running." + notRunning));
    rows.push_back(Row("instances: neither running", make, "",
                       "LfxMain: Launcher, Game are not running.|" + kRunning));
    // What the launcher cannot go on without: the assertion box, answered with Cancel.
    rows.push_back(
        Row(
            "fatal: no data folder",
            [](Product& p)
            {
                p.Make();
                RemoveTree(Join(p.folder, "Install"));
            },
            "", "")
            .Box(Fatal("clt_IsDirectoryPresent(g_Env[\"DataDir\"])", kLfx, 173), IDCANCEL));
    rows.push_back(Row(
                       "fatal: no setup.ini",
                       [](Product& p)
                       {
                           p.Make();
                           DeleteFileA(Join(p.folder, "Install\\setup.ini").c_str());
                       },
                       "", "")
                       .Box(noIni, IDCANCEL));
    rows.push_back(Row(
                       "fatal: setup.ini locked",
                       [](Product& p)
                       {
                           p.Make();
                           // Opened without sharing while the launcher runs: it cannot read it.
                           p.lock = CreateFileA(Join(p.folder, "Install\\setup.ini").c_str(),
                                                GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                                FILE_ATTRIBUTE_NORMAL, nullptr);
                       },
                       "", "")
                       .Box(noIni, IDCANCEL));
    rows.push_back(Row("fatal: setup library missing",
                       changed([](Product& p) { p.ini.Set("Files", "SetupDll", "Missing.dll"); }),
                       "", "")
                       .Box(Fatal("m_hSetupDll!=0", kLfx, 227), IDCANCEL));
    for (const char* name : {"fatal: NoExport.dll", "fatal: RefusingSetup.dll"})
        rows.push_back(
            Row(
                name,
                [library = name + 7](Product& p)
                {
                    p.ini.Set("Files", "SetupDll", library);
                    p.Make();
                    CopyInto(Join(ExeFolder(), library), Join(p.folder, "Install"));
                },
                "", "")
                .Box(name[7] == 'N'
                         ? Fatal("VokSetup_GetSetup!=0", kLfx, 230)
                         : Fatal("VokSetup_GetSetup(g_Env[\"DataDir\"],&m_pVokSetup)", kLfx, 231),
                     IDCANCEL));
    rows.push_back(Row("fatal: launcher mutex empty",
                       changed([](Product& p) { p.ini.Set("Mutex", "Launcher", ""); }), "", "")
                       .Box(Fatal("!strLauncherMutex.empty()", kLfx, 336), IDCANCEL));
    rows.push_back(Row("fatal: game mutex missing",
                       changed([](Product& p) { p.ini.Remove("Mutex", "Product"); }), "", "")
                       .Box(Fatal("!strGameMutex.empty()", kLfx, 337), IDCANCEL));
    rows.push_back(Row("fatal: launcher name missing",
                       changed([](Product& p) { p.ini.Remove("Files", "Launcher"); }), "", "")
                       .Box(emptyValue, IDCANCEL));
    rows.push_back(Row("fatal: DirectX version missing",
                       changed([](Product& p) { p.ini.Remove("Startup", "DirectXVer"); }), "", "")
                       .Box(emptyValue, IDCANCEL));
    // A retail product's disc: its label must begin with [Startup] Data (GAME); the session's
    // CD drives carry the labels F: GAME_DISC1, G: GAM, H: OTHER, I: game. -I runs the
    // installer, a recorder.
    auto onDisc = [](std::string drive, const char* appType, const char* disks)
    {
        return [=](Product& p)
        {
            p.ini.Set("Startup", "Data", "GAME");
            p.ini.Set("Startup", "AppType", appType);
            p.ini.Set("Startup", "Disks", disks);
            p.Make();
            CopyInto(Join(ExeFolder(), "test_helper.exe"), Join(p.folder, "Install"),
                     "TarnSetup.exe");
            RemoveTree(drive + "Install");
            DeleteFileA((drive + "Launcher.exe").c_str());
            CopyTree(p.folder, drive);
            p.program = drive + "Launcher.exe", p.cwd = "";
            p.record = drive + "Install\\TarnSetup.exe.log";
        };
    };
    const ::Box insert = {"Tarn",
                          "Please insert the Tarn disc into your CD-ROM drive and click OK.",
                          SeenFromOutside(0x2031)};
    const ::Box insertFirst = {
        "Tarn", "Please insert Tarn disc 1 into your CD-ROM drive and click OK.", insert.style};
    rows.push_back(Row("media: label GAME_DISC1", onDisc("F:\\", "Retail", "1"), "-I", "",
                       "args=|cwd=F:\\\n"));
    rows.push_back(Row("media: label game, RETAIL", onDisc("I:\\", "RETAIL", "1"), "-I", "",
                       "args=|cwd=I:\\\n"));
    rows.push_back(
        Row("media: label GAM", onDisc("G:\\", "Retail", "1"), "-I", "", "").Box(insert, IDCANCEL));
    rows.push_back(Row("media: another disc of two", onDisc("H:\\", "Retail", "2"), "-I", "", "")
                       .Box(insertFirst, IDCANCEL));
    rows.push_back(
        Row("media: another disc, asked again", onDisc("H:\\", "Retail", "0"), "-I", "", "")
            .Box(insert, IDOK)
            .Box(insert, IDCANCEL));
    rows.push_back(Row("media: a demo asks for no disc", onDisc("G:\\", "Demo", "1"), "-I", "",
                       "args=|cwd=G:\\\n"));
    // Installing DirectX from [Folders] DirectXCurrent, or on Windows 95 from [Folders]
    // DirectX; null: the key is missing. The setup library reports DirectX missing.
    auto directX = [](bool windows95, const char* current, const char* old)
    {
        return [=](Product& p)
        {
            current ? p.ini.Set("Folders", "DirectXCurrent", current)
                    : p.ini.Remove("Folders", "DirectXCurrent");
            if (old) p.ini.Set("Folders", "DirectX", old);
            p.Make();
            WriteTextFile(Join(p.folder, "Install\\setup.ini"),
                          p.ini.Text() +
                              "[VokSetupTest]\r\nDirectXState=2\r\nDirectXInstall=0\r\n");
            MakeFolders(Join(p.folder, "DirectX"));
            MakeFolders(Join(p.folder, "DX95"));
            demo::MarkInstalled(p.ini, p.folder);
            if (windows95)
                RegSetKeyValueA(HKEY_CURRENT_USER, kLauncherSettings, "Version", REG_SZ, "win95",
                                6);
        };
    };
    const ::Box offer = {"Tarn",
                         "Tarn needs DirectX 7.0 or later, which is not installed on this "
                         "computer.\n\nDo you want to install DirectX now?",
                         MB_YESNO | MB_ICONQUESTION};
    const ::Box noSound = {"Tarn",
                           "No working sound device was found.\n\nDo you want to play without "
                           "sound?",
                           MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2};
    rows.push_back(
        Row("directx: current folder missing", directX(false, nullptr, "DX95"), "-I", "")
            .Box(offer, IDYES)
            .Box(Fatal("GetIniString(SCT_FOLDERS,VAL_DIRECTX_CURRENT,strDirectX)", kLfx, 1181),
                 IDCANCEL));
    rows.push_back(
        Row("directx: Windows 95 folder missing", directX(true, "DirectX", nullptr), "-I", "")
            .Box(offer, IDYES)
            .Box(Fatal("GetIniString(SCT_FOLDERS,VAL_DIRECTX,strDirectX)", kLfx, 1198), IDCANCEL));
    // Windows 95 installs from DX95 although DirectXCurrent names no folder, and goes on to
    // the checks before the game.
    rows.push_back(Row("directx: Windows 95 folder", directX(true, "Missing", "DX95"), "-I", "")
                       .Box(offer, IDYES)
                       .Box(noSound, IDNO)
                       .Box(noSound, IDNO));
    rows.push_back(Row("directx: other Windows, current folder",
                       directX(false, "DirectX", "Missing"), "-I", "")
                       .Box(offer, IDYES)
                       .Box(noSound, IDNO)
                       .Box(noSound, IDNO));
    int ran = 0;
    for (const Row& row : rows)
    {
        std::string name = row.name;
        if (std::none_of(std::begin(kGroups), std::end(kGroups),
                         [&](const char* g) { return name.rfind(std::string(g) + ": ", 0) == 0; }))
            ADD_FAILURE() << row.name << ": in no group, so it never runs";
        if (name.rfind(group + ": ", 0) != 0) continue;
        ++ran;
        SCOPED_TRACE(row.name);
        Product p("row");
        row.prepare(p);
        auto fill = [&](std::string text)
        {
            for (size_t at; (at = text.find('$')) != std::string::npos;)
                text.replace(at, 1, p.folder);
            return text;
        };
        RunResult r = LaunchIn(p.program, fill(row.args), p.cwd, row.answers);
        EXPECT_EQ(r.exitCode, 0u);
        ASSERT_EQ(r.boxes.size(), row.boxes.size());
        for (size_t i = 0; i < r.boxes.size(); ++i)
        {
            EXPECT_EQ(r.boxes[i].title, row.boxes[i].title);
            EXPECT_EQ(r.boxes[i].text, row.boxes[i].text);
            EXPECT_EQ(StyleOf(r.boxes[i]), row.boxes[i].style);
        }
        std::vector<std::string> lines = Lines(r), expected;
        for (size_t at = 0, bar; at < row.lines.size(); at = bar + 1)
        {
            bar = row.lines.find('|', at);
            if (bar == std::string::npos) bar = row.lines.size();
            expected.push_back(row.lines.substr(at, bar - at));
        }
        for (const std::string& line : expected)
            if (line.empty())
                continue;
            else if (line[0] == '-')
                EXPECT_FALSE(HasLine(r, fill(line.substr(1)))) << line;
            else if (line[0] == '=') // the last step before the destruction
                EXPECT_EQ(lines.size() < 3 ? "" : lines[lines.size() - 3], fill(line.substr(1)));
            else
                EXPECT_TRUE(HasLine(r, fill(line))) << line;
        // A fatal condition ends the process at once; every other start ends in order.
        bool fatalBox = std::any_of(row.boxes.begin(), row.boxes.end(),
                                    [](const ::Box& b) { return b.title == kGuru; });
        EXPECT_EQ(HasLine(r, "LfxMain: Destruction completed."), !fatalBox);
        if (row.recorded != "-")
        {
            for (int i = 0; i < 100 && !row.recorded.empty() && ReadTextFile(p.record).empty(); ++i)
                Sleep(50);
            EXPECT_EQ(ReadTextFile(p.record), fill(row.recorded));
        }
    }
    EXPECT_GT(ran, 0);
    RemoveTree("R:\\Install");
    DeleteFileA("R:\\Launcher.exe");
}
} // namespace

TEST(LauncherRuns, WhereTheLauncherAndItsDataAre)
{
    RunRows("where");
}
TEST(LauncherRuns, StateSourceFolderAndHandOver)
{
    RunRows("state");
}
TEST(LauncherRuns, OneAtATimeAndNoneWhileTheGameRuns)
{
    RunRows("instances");
}
TEST(LauncherRuns, FatalConditionsShowTheAssertionBox)
{
    RunRows("fatal");
}
TEST(LauncherRuns, TheDiscLabelMustBeginWithTheConfiguredLabel)
{
    RunRows("media");
}
TEST(LauncherRuns, TheDirectXFolderOnTheMediaAndOnWindows95)
{
    RunRows("directx");
}

namespace
{
// The launchers' visible windows (framework classes), and the running programs named
// Launcher.exe.
int LauncherWindows(HWND* last = nullptr)
{
    int count = 0;
    FindTopLevelWindow(
        [&](HWND w)
        {
            if (IsWindowVisible(w) && ClassOf(w).rfind("CltWin:", 0) == 0 && ++count && last)
                *last = w;
            return false;
        });
    return count;
}
int LauncherProcesses()
{
    HANDLE all = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
    PROCESSENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = Process32First(all, &entry); more; more = Process32Next(all, &entry))
        count += _stricmp(entry.szExeFile, "Launcher.exe") == 0;
    CloseHandle(all);
    return count;
}
bool WaitUntil(const std::function<bool()>& holds)
{
    for (int i = 0; i < 600; ++i, Sleep(100))
        if (holds()) return true;
    return holds();
}
} // namespace

// Twenty launchers started at the same moment: exactly one goes on (to its version box, to
// its window, or, for copies on the media, the installed launcher to its window) and the
// others end quietly with exit code 0. A launcher that goes on holds the launcher mutex
// until it ends, so nothing is answered or closed until all others have ended.
TEST(LauncherSingleInstance, TwentyLaunchersAtOnceLeaveOne)
{
    struct Row
    {
        const char* what;
        const char* args;
        bool media;
    } rows[] = {{"version box", "-V", false}, {"window", "", false}, {"hand-over", "", true}};
    for (const Row& row : rows)
    {
        std::string folder = Fresh("twenty"), installed = Fresh("twenty-installed");
        Ini ini("Twenty");
        demo::MakeProduct(folder, ini);
        DeleteRegTree(ini.RegistryKey());
        if (row.media)
        {
            demo::MakeProduct(installed, ini);
            demo::MarkInstalled(ini, installed);
            SetRegString(ini.RegistryKey(), "Source Dir", "E:\\");
        }
        std::vector<std::future<RunResult>> runs;
        for (int i = 0; i < 20; ++i)
            runs.push_back(std::async(std::launch::async,
                                      [&]
                                      {
                                          RunOptions run;
                                          run.program = Join(folder, "Launcher.exe");
                                          run.arguments = row.args;
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
        EXPECT_TRUE(WaitUntil([&] { return ended() == (row.media ? 20 : 19); })) << row.what;
        if (*row.args)
        {
            HWND box = nullptr;
            EXPECT_TRUE(WaitUntil([&] { return (box = FindMessageBox("Tarn")) != nullptr; }));
            PostMessageA(GetDlgItem(box, IDOK), BM_CLICK, 0, 0);
        }
        else
        {
            EXPECT_TRUE(WaitUntil([] { return LauncherProcesses() == 1; })) << row.what;
            HWND window = nullptr;
            EXPECT_TRUE(WaitUntil([&] { return LauncherWindows(&window) == 1; })) << row.what;
            EXPECT_EQ(FindMessageBox("Tarn"), nullptr) << row.what;
            PostMessageA(window, WM_CLOSE, 0, 0);
            EXPECT_TRUE(WaitUntil([] { return LauncherProcesses() == 0; })) << row.what;
        }

        // Launchers that start together also see each other's momentary test of the game's
        // mutex, so a refused launcher reports either a running launcher or a running game.
        int running = 0, refused = 0, handedOver = 0;
        for (auto& f : runs)
        {
            RunResult r = f.get();
            EXPECT_EQ(r.exitCode, 0u) << row.what;
            EXPECT_FALSE(r.timedOut) << row.what;
            running += HasLine(r, "LfxMain: Launcher, Game are not running.");
            refused += HasLine(r, "LfxMain: Launcher is already running.") ||
                       HasLine(r, "LfxMain: Game is already running.");
            handedOver += HasLine(r, kHandOver);
        }
        EXPECT_EQ(running, row.media ? 0 : 1) << row.what;
        EXPECT_EQ(refused, row.media ? 0 : 19) << row.what;
        EXPECT_EQ(handedOver, row.media ? 20 : 0) << row.what;
        DeleteRegTree(ini.RegistryKey());
    }
}
