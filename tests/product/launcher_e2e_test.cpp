// End-to-end tests of the real executables under Wine: what the TraceWin viewer receives
// during the launcher's static construction, the assertion boxes of a framework program,
// read and answered from outside, and the rule that system libraries come from the system
// folder only.
#include "harness/wine_Harness.h"
#include "support/assert_Text.h"
#include "support/demo_Product.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace harness;
using demo::HasLine;
using demo::Launch;
using demo::LaunchIn;

namespace
{
// A product folder of the test's own: the launcher and its data folder.
std::string LauncherCopy(const std::string& folderName)
{
    std::string folder = Join(TestRoot(), folderName);
    RemoveTree(folder);
    demo::Ini ini("Startup");
    demo::MakeProduct(folder, ini);
    DeleteRegTree(ini.RegistryKey());
    return folder;
}

// The environment's bucket order: h = h * 33 + signed byte, modulo 1024.
unsigned Bucket(const std::string& key)
{
    unsigned h = 0;
    for (char c : key)
        h = h * 33u + static_cast<unsigned>(static_cast<int>(static_cast<signed char>(c)));
    return h % 1024;
}

std::string Dump(std::vector<std::pair<std::string, std::string>> entries)
{
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto& a, const auto& b)
                     { return Bucket(a.first) < Bucket(b.first); });
    std::string text;
    for (const auto& [key, value] : entries)
        text += key + ": " + value + "\n";
    return text;
}

const std::vector<std::string> kRegistrationTexts = {
    "LfxMain: ", "Early construction completed.\n", "LfxMain: ", "Registering launcher\n",
    "LfxMain: ", "Registering page [INSTALL]\n",    "LfxMain: ", "Registering page [LAUNCH]\n",
    "LfxMain: ", "Registering page [LAUNCH]\n",     "LfxMain: ", "Registering page [HELP]\n",
    "LfxMain: ", "Registering page [OPTIONS]\n"};
} // namespace

TEST(LauncherStartup, TraceWinReceivesOnlyTheRegistrationTexts)
{
    std::string folder = LauncherCopy("tracewin");
    std::string records = Join(folder, "tracewin.txt");
    Process viewer;
    ASSERT_TRUE(
        viewer.Start(Join(ExeFolder(), "TraceWin.exe"), "/out:\"" + records + "\" /class:both"));
    ASSERT_NE(WaitForWindowClass("TraceWin TRACE Window"), nullptr);
    ASSERT_NE(WaitForWindowClass("MfxTraceWindow"), nullptr);

    RunOptions run;
    run.program = Join(folder, "Launcher.exe");
    run.arguments = "-DISABLEMUTEX";
    RunResult r = RunProgram(run);
    EXPECT_EQ(r.exitCode, 0u);
    EXPECT_EQ(viewer.Close(), 0u);

    std::vector<TraceWinRecord> received = ReadTraceWinRecords(records);
    std::vector<std::string> texts;
    for (const TraceWinRecord& rec : received)
    {
        EXPECT_EQ(rec.windowTag, "twin"); // preferred over MfxTraceWindow
        EXPECT_EQ(rec.dwData, 0x6E697774u);
        EXPECT_EQ(rec.cbData, rec.text.size());
        texts.push_back(rec.text);
    }
    EXPECT_EQ(texts, kRegistrationTexts);
    // The debugger saw none of them: its first text is the entry's.
    ASSERT_FALSE(r.traces.empty());
    EXPECT_EQ(r.traces.front(), "WinMain: Initializing CltWinApp\n");
}

TEST(AssertionBox, RetryShowsTheDumpCancelDoesNotAndTheExitCodeIsZero)
{
    const std::string probe = Join(ExeFolder(), "assert_probe.exe");
    const int probeLine =
        expect::SourceLine("tests/FrameWork/_cult/assert_probe.cpp", "CLT_ASSERT(probeValue == 0)");
    const int envLine = expect::SourceLine("FrameWork/_cult/Source/clt_Environment.cpp",
                                           "CLT_ASSERT(!strSecond.empty())");
    ASSERT_GT(probeLine, 0);
    ASSERT_GT(envLine, 0);
    const std::string failText =
        expect::AssertText("probeValue == 0", "tests/FrameWork/_cult/assert_probe", probeLine);
    const std::string dump = Dump({{"__UNDEFINED", "[Undefined]"},
                                   {"FAIL", ""},
                                   {"MODULEFILENAME", probe},
                                   {"PROBENAME", "Guru"},
                                   {"PROBE EMPTY", ""}});
    struct Case
    {
        const char* arguments;
        std::vector<int> answers;
        std::vector<std::pair<std::string, std::string>> boxes; // title, text
    } cases[] = {
        {"-FAIL",
         {IDRETRY, IDOK},
         {{"Guru meditation failure!", failText}, {"Environment Dump", dump}}},
        {"-FAIL", {IDCANCEL}, {{"Guru meditation failure!", failText}}},
        {"-NOENV",
         {IDRETRY, IDOK},
         {{"Guru meditation failure!", failText}, {"Environment Dump", "No environment present!"}}},
        {"-EMPTY",
         {IDCANCEL},
         {{"Guru meditation failure!",
           expect::AssertText("!strSecond.empty()", "FrameWork/_cult/Source/clt_Environment",
                              envLine)}}},
    };
    for (const Case& c : cases)
    {
        RunOptions run;
        run.program = probe;
        run.arguments = c.arguments;
        run.answers = c.answers;
        RunResult r = RunProgram(run);
        SCOPED_TRACE(c.arguments);
        EXPECT_FALSE(r.timedOut);
        EXPECT_EQ(r.exitCode, 0u);
        ASSERT_EQ(r.boxes.size(), c.boxes.size());
        for (size_t i = 0; i < r.boxes.size(); ++i)
        {
            EXPECT_TRUE(r.boxes[i].scripted);
            EXPECT_EQ(r.boxes[i].title, c.boxes[i].first);
            EXPECT_EQ(r.boxes[i].text, c.boxes[i].second);
        }
        EXPECT_EQ(StyleOf(r.boxes[0]), UINT(MB_RETRYCANCEL | MB_ICONHAND));
        if (r.boxes.size() > 1)
        {
            EXPECT_EQ(StyleOf(r.boxes[1]), UINT(MB_OK));
        }
        // Nothing is traced once the assertion fails: no destruction texts.
        for (const std::string& t : r.traces)
            EXPECT_EQ(t.find("Destruction"), std::string::npos);
    }
}

TEST(LauncherLibraries, PlantedSystemLibrariesAreNotLoaded)
{
    // Decoys of the system libraries the launcher and its window pull in, beside the
    // launcher, in its data folder and in the folder it is started from.
    const char* const names[] = {"ddraw.dll",    "DSOUND.DLL",  "winmm.dll", "msvfw32.dll",
                                 "comctl32.dll", "uxtheme.dll", "oleacc.dll"};
    std::string folder = Join(TestRoot(), "planted"), current = Join(folder, "Current");
    RemoveTree(folder);
    demo::Ini ini("Planted");
    demo::MakeProduct(folder, ini);
    for (const std::string& where : {folder, Join(folder, "Install"), current})
        for (const char* name : names)
            CopyInto(Join(ExeFolder(), std::string("..\\planted\\") + name), where);
    // Wine otherwise always uses its own libraries: ask for the files first, as Windows does.
    std::initializer_list<const char*> stems = {"ddraw",    "dsound",  "winmm", "msvfw32",
                                                "comctl32", "uxtheme", "oleacc"};
    demo::SetLibraryOverrides("loader.exe", stems, "native,builtin");
    demo::SetLibraryOverrides("Launcher.exe", stems, "native,builtin");
    // A program beside the decoys that loads the libraries by name gets them.
    CopyInto(Join(ExeFolder(), "test_helper.exe"), folder, "loader.exe");
    for (const char* name : names)
    {
        Process loader;
        ASSERT_TRUE(loader.Start(Join(folder, "loader.exe"), std::string("-LOAD=") + name, folder));
        WaitForSingleObject(loader.Handle(), 10000);
        std::string marker = Join(folder, name) + ".loaded";
        EXPECT_NE(GetFileAttributesA(marker.c_str()), INVALID_FILE_ATTRIBUTES) << marker;
        DeleteFileA(marker.c_str());
    }

    // The loader's own account (the debugger hears of every library it maps): the setup
    // library is the only one the launcher takes from the product's folders. Installed in
    // its own folder, -I runs every check that loads DirectX, then the game; the plain
    // start opens the window (sound, common controls, theming) and is closed.
    std::string setup = Join(Join(folder, "Install"), "VokSetup.dll");
    demo::MarkInstalled(ini, folder);
    for (const char* arguments : {"-I", ""})
    {
        RunResult r = LaunchIn(Join(folder, "Launcher.exe"), arguments, current, {IDNO, IDNO});
        EXPECT_EQ(r.exitCode, 0u) << arguments;
        EXPECT_TRUE(HasLine(r, "LfxMain: Destruction completed.")) << arguments;
        EXPECT_GT(r.libraries.size(), 5u) << arguments;
        for (const std::string& library : r.libraries)
            EXPECT_TRUE(_strnicmp(library.c_str(), folder.c_str(), folder.size()) != 0 ||
                        _stricmp(library.c_str(), setup.c_str()) == 0)
                << arguments << ": " << library;
        EXPECT_EQ(std::count(r.libraries.begin(), r.libraries.end(), setup), 1) << arguments;
        if (*arguments)
        {
            ASSERT_EQ(r.boxes.size(), 2u); // no sound device: declined, so nothing is started
            EXPECT_EQ(r.boxes[0].text,
                      "No working sound device was found.\n\nDo you want to play without sound?");
            EXPECT_EQ(StyleOf(r.boxes[1]), 0x124u); // the product's own question
        }
    }
    demo::SetLibraryOverrides("loader.exe", {}, "");
    demo::SetLibraryOverrides("Launcher.exe", {}, "");
    DeleteRegTree(ini.RegistryKey());
}

// While the first page is being put in place (its trace text holds the launcher still), the
// window already has its region but is not shown yet: it appears complete.
TEST(LauncherWindow, AppearsOnlyWithItsShapeAndFirstPage)
{
    std::string folder = LauncherCopy("firstframe");
    for (const char* file : {"product.bmp", "product.rgn"})
        CopyInto(Join(ExeFolder(), std::string("..\\demo-product\\Install\\") + file),
                 Join(folder, "Install"));
    RunOptions run;
    run.program = Join(folder, "Launcher.exe");
    int found = 0, visible = -1, region = -1;
    run.onTrace = [&](const std::string& text)
    {
        if (text != "Page [INSTALL] shown.\n") return;
        HWND window =
            FindTopLevelWindow([](HWND w) { return ClassOf(w).rfind("CltWin:", 0) == 0; });
        found += window != nullptr;
        visible = IsWindowVisible(window);
        HRGN shape = CreateRectRgn(0, 0, 0, 0);
        region = GetWindowRgn(window, shape);
        DeleteObject(shape);
    };
    RunResult r = RunProgram(run);
    EXPECT_EQ(r.exitCode, 0u);
    EXPECT_EQ(found, 1);
    EXPECT_EQ(visible, 0);
    EXPECT_EQ(region, COMPLEXREGION);
}
