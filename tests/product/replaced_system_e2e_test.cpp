// Tests that change the Windows system itself, run only in a throwaway copy of the test
// prefix (tests/product/replaced_system_e2e.sh makes it and checks what is left after):
//  - the system's DSOUND.DLL replaced by one that does not load, one without
//    DirectSoundCreate, and one whose device refuses the cooperative level;
//  - with "--restart LOG": the DirectX installation that needs a restart, answered Yes,
//    so that the launcher's ExitWindowsEx ends every program of the prefix, this one too.
//    Each step is written to LOG before it is taken; the script reads LOG afterwards.
#include "harness/wine_Harness.h"
#include "support/demo_Product.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using namespace harness;

namespace
{
// An installed product in folder whose game is a recording helper; DirectX is ready
// unless settings say otherwise.
demo::Ini MakeInstalled(const std::string& folder, const char* tag, const std::string& settings)
{
    RemoveTree(folder);
    demo::Ini ini(tag);
    demo::MakeProduct(folder, ini);
    WriteTextFile(Join(folder, "Install\\setup.ini"), ini.Text() + "[VokSetupTest]\r\n" + settings);
    MakeFolders(Join(folder, "Game"));
    CopyInto(Join(ExeFolder(), "test_helper.exe"), Join(folder, "Game"), "Tarn.exe");
    MakeFolders(Join(folder, "DirectX"));
    demo::MarkInstalled(ini, folder);
    return ini;
}

std::string SystemFile(const char* name)
{
    char folder[MAX_PATH];
    GetSystemDirectoryA(folder, MAX_PATH);
    return Join(folder, name);
}

bool InThrowawayPrefix()
{
    const char* flag = getenv("LAUNCHER_THROWAWAY_PREFIX");
    return flag && std::string(flag) == "1";
}
} // namespace

TEST(ReplacedDirectSound, EachFailureShowsItsBoxThenThePlayerDecides)
{
    ASSERT_TRUE(InThrowawayPrefix()) << "run through replaced_system_e2e.sh only";
    const std::string noDevice =
        "No working sound device was found.\n\nDo you want to play without sound?";
    const std::string notStarted = "The program could not be started.\n\nPlease reinstall Tarn.";
    std::string planted = Join(ExeFolder(), "..\\fake-dsound");
    std::string original = Join(TestRoot(), "dsound.original");
    ASSERT_TRUE(CopyFileA(SystemFile("dsound.dll").c_str(), original.c_str(), FALSE));
    struct Shown
    {
        std::string text;
        UINT style;
    };
    const Shown failed = {notStarted, 0x2010};
    const Shown refused = {noDevice, 0x2010};
    const Shown ask = {noDevice, 0x2124};
    struct Case
    {
        const char* name;
        std::string file; // replaces the system's DSOUND.DLL; empty: Wine's own
        std::vector<int> answers;
        std::vector<Shown> boxes;
        bool gameStarted;
    } cases[] = {
        // Wine's own library without a sound device: the player may go on without sound.
        {"system library", "", {IDYES}, {ask}, true},
        // After each failure the product asks whether to play without sound.
        {"not a library", Join(TestRoot(), "garbage.dll"), {IDOK, IDNO}, {failed, ask}, false},
        {"no DirectSoundCreate",
         Join(planted, "noentry\\dsound.dll"),
         {IDOK, IDNO},
         {failed, ask},
         false},
        {"cooperative level refused",
         Join(planted, "nocoop\\dsound.dll"),
         {IDOK, IDNO},
         {refused, ask},
         false},
        {"cooperative level refused, played",
         Join(planted, "nocoop\\dsound.dll"),
         {IDOK, IDYES},
         {refused, ask},
         true},
    };
    WriteTextFile(Join(TestRoot(), "garbage.dll"), "This is not a library.");
    std::string folder = Join(TestRoot(), "dsound");
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        MakeInstalled(folder, "DSound", "DirectXState=1\r\n");
        ASSERT_TRUE(CopyFileA((c.file.empty() ? original : c.file).c_str(),
                              SystemFile("dsound.dll").c_str(), FALSE));
        // Only the file in the system folder, or Wine's own library.
        demo::SetLibraryOverrides("Launcher.exe", {"dsound"}, c.file.empty() ? "" : "native");
        RunResult r = demo::Launch(Join(folder, "Launcher.exe"), "-I", c.answers);
        EXPECT_EQ(r.exitCode, 0u);
        std::string shown;
        for (const MessageBoxRecord& box : r.boxes)
            shown += "[" + box.title + ": " + box.text + "] ";
        ASSERT_EQ(r.boxes.size(), c.boxes.size()) << shown;
        for (size_t i = 0; i < r.boxes.size(); ++i)
        {
            EXPECT_EQ(r.boxes[i].title, "Tarn");
            EXPECT_EQ(r.boxes[i].text, c.boxes[i].text) << i;
            EXPECT_EQ(StyleOf(r.boxes[i]), SeenFromOutside(c.boxes[i].style)) << i;
        }
        std::string record = Join(folder, "Game\\Tarn.exe.log");
        for (int i = 0; i < 100 && c.gameStarted && ReadTextFile(record).empty(); ++i)
            Sleep(50);
        EXPECT_EQ(!ReadTextFile(record).empty(), c.gameStarted);
    }
    CopyFileA(original.c_str(), SystemFile("dsound.dll").c_str(), FALSE);
    demo::SetLibraryOverrides("Launcher.exe", {}, "");
}

namespace
{
// The restart: a program that must not outlive the restart, then the launcher, whose
// DirectX installation asks for a restart; both questions answered Yes.
int DriveRestart(const char* logPath)
{
    FILE* log = fopen(logPath, "wb");
    if (!log) return 2;
    auto note = [&](const std::string& line)
    {
        fprintf(log, "%s\n", line.c_str());
        fflush(log);
    };
    std::string folder = Join(TestRoot(), "restart");
    MakeInstalled(folder, "Restart", "DirectXState=2\r\nDirectXInstall=1\r\n");
    CopyInto(Join(ExeFolder(), "test_helper.exe"), folder, "restart_sentinel.exe");
    Process sentinel;
    if (!sentinel.Start(Join(folder, "restart_sentinel.exe"), "-HOLD=RestartSentinel")) return 3;
    note("sentinel started");
    RunOptions run;
    run.program = Join(folder, "Launcher.exe");
    run.arguments = "-I";
    run.answers = {IDYES, IDYES};
    run.timeoutMs = 60000;
    run.onBox = [&](const MessageBoxRecord& box)
    {
        std::string text = box.text;
        for (size_t at = text.find('\n'); at != std::string::npos; at = text.find('\n'))
            text.replace(at, 1, "|");
        note("box [" + box.title + "] [" + text + "] " + box.icon + ", answered " +
             std::to_string(box.answer));
    };
    RunResult r = RunProgram(run);
    Sleep(5000); // the restart ends this program before the launcher's result counts
    note("survived the restart: launcher exit " + std::to_string(r.exitCode));
    return 1;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc == 3 && std::string(argv[1]) == "--restart") return DriveRestart(argv[2]);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
