// The demo product's helper programs as the launcher starts them: in the data folder,
// with one key. Unknown keys are reported, never a crash; the system check shows the
// machine's figures and ends when its window is closed.
#include "harness/wine_Harness.h"

#include <gtest/gtest.h>

#include <string>

using namespace harness;

namespace
{
std::string DataFolder()
{
    return Join(ExeFolder(), "..\\demo-product\\Install");
}

RunResult RunHelper(const char* program, const char* key, std::vector<int> answers)
{
    RunOptions run;
    char full[MAX_PATH] = {};
    GetFullPathNameA(Join(DataFolder(), program).c_str(), MAX_PATH, full, nullptr);
    run.program = full;
    run.arguments = key;
    run.workingFolder = DataFolder();
    run.answers = std::move(answers);
    return RunProgram(run);
}
} // namespace

TEST(DemoHelpers, UnknownKeysAreReportedAndEndWithOne)
{
    struct Case
    {
        const char* program;
        const char* key;
        const char* text;
    } cases[] = {
        {"Doc.exe", "MANUAL", "No document is known by the name [MANUAL]."},
        {"Doc.exe", "", "No document is known by the name []."},
        {"Url.exe", "README", "No web address is known by the name [README]."},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(std::string(c.program) + " " + c.key);
        RunResult r = RunHelper(c.program, c.key, {IDOK});
        EXPECT_EQ(r.exitCode, 1u);
        ASSERT_EQ(r.boxes.size(), 1u);
        EXPECT_EQ(r.boxes[0].title, "Tarn");
        EXPECT_EQ(r.boxes[0].text, c.text);
        EXPECT_EQ(StyleOf(r.boxes[0]), UINT(MB_OK | MB_ICONEXCLAMATION));
    }
}

TEST(DemoHelpers, WebAddressesOpenInTheRegisteredBrowser)
{
    // A stand-in browser, registered for https while the test runs, records the address.
    // (Wine reads classes from the machine's key only, not from the user's.)
    std::string folder = Join(TestRoot(), "browser");
    RemoveTree(folder);
    MakeFolders(folder);
    ASSERT_TRUE(CopyInto(Join(ExeFolder(), "test_helper.exe"), folder, "browser.exe"));
    std::string browser = Join(folder, "browser.exe");
    const char* key = "Software\\Classes\\https\\shell\\open\\command";
    char previous[1024] = {};
    DWORD size = sizeof previous;
    bool hadPrevious = RegGetValueA(HKEY_LOCAL_MACHINE, key, nullptr, RRF_RT_REG_SZ, nullptr,
                                    previous, &size) == ERROR_SUCCESS;
    ASSERT_TRUE(SetRegString(key, "", "\"" + browser + "\" \"%1\""));
    RunResult r = RunHelper("Url.exe", "HOMEPAGE", {});
    EXPECT_EQ(r.exitCode, 0u);
    EXPECT_TRUE(r.boxes.empty());
    std::string record = browser + ".log";
    for (int i = 0; i < 200 && ReadTextFile(record).empty(); ++i)
        Sleep(50);
    EXPECT_EQ(ReadTextFile(record).substr(0, ReadTextFile(record).find('|')),
              "args=\"https://tarn.example\"");
    if (hadPrevious)
        SetRegString(key, "", previous);
    else
        DeleteRegTree("Software\\Classes\\https");
}

TEST(DemoHelpers, DocumentsOpenWithTheShell)
{
    // A known key opens its document in the program the system has for it.
    RunResult r = RunHelper("Doc.exe", "README", {});
    EXPECT_EQ(r.exitCode, 0u);
    EXPECT_TRUE(r.boxes.empty());
    HWND notepad = WaitForWindowClass("Notepad", 20000);
    ASSERT_NE(notepad, nullptr);
    PostMessageA(notepad, WM_CLOSE, 0, 0);
}

TEST(DemoHelpers, SystemCheckShowsTheMachineAndEndsWhenClosed)
{
    Process check;
    ASSERT_TRUE(check.Start(Join(DataFolder(), "Syscheck.exe"), "", DataFolder()));
    HWND window = WaitForWindowClass("TarnSysCheck", 20000);
    ASSERT_NE(window, nullptr);
    std::string report = WaitForChildText(window, 1);
    EXPECT_NE(report.find("Physical memory: "), std::string::npos) << report;
    EXPECT_NE(report.find("Paging space: "), std::string::npos) << report;
    EXPECT_NE(report.find("Windows version: "), std::string::npos) << report;
    EXPECT_NE(report.find("Display devices:\r\n    DirectDraw HAL\r\n"), std::string::npos)
        << report;
    EXPECT_NE(report.find("DirectX: ready\r\n"), std::string::npos) << report;
    EXPECT_EQ(check.Close(), 0u);
}
