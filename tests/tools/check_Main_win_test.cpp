// ProductCheck.exe as a publisher runs it: its report on the standard output, the last
// line a summary, and its exit code; a wrong command line on the standard error.
#include "harness/wine_Harness.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <string>

namespace
{
struct Outcome
{
    DWORD exitCode = 0xFFFFFFFF;
    std::string out, err;
};

HANDLE Inheritable(const std::string& path)
{
    SECURITY_ATTRIBUTES sa = {sizeof sa, nullptr, TRUE};
    return CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &sa, CREATE_ALWAYS,
                       FILE_ATTRIBUTE_NORMAL, nullptr);
}

// The program shares this test's console (no console host of its own is started) and
// writes to files of its own run.
Outcome RunCheck(const std::string& arguments)
{
    static int run = 0;
    ++run;
    std::string program = harness::Join(harness::ExeFolder(), "ProductCheck.exe");
    std::string outPath = harness::Join(harness::TestRoot(), "out" + std::to_string(run) + ".txt");
    std::string errPath = harness::Join(harness::TestRoot(), "err" + std::to_string(run) + ".txt");
    STARTUPINFOA si = {};
    si.cb = sizeof si;
    si.dwFlags = STARTF_USESTDHANDLES;
    si.hStdOutput = Inheritable(outPath);
    si.hStdError = Inheritable(errPath);
    std::string commandLine = "\"" + program + "\" " + arguments;
    PROCESS_INFORMATION pi = {};
    Outcome outcome;
    bool started = CreateProcessA(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0,
                                  nullptr, nullptr, &si, &pi);
    EXPECT_TRUE(started) << "error " << GetLastError() << " starting " << commandLine;
    if (started)
    {
        EXPECT_EQ(WaitForSingleObject(pi.hProcess, 60000), WAIT_OBJECT_0);
        GetExitCodeProcess(pi.hProcess, &outcome.exitCode);
        CloseHandle(pi.hProcess);
        CloseHandle(pi.hThread);
    }
    CloseHandle(si.hStdOutput);
    CloseHandle(si.hStdError);
    outcome.out = harness::ReadTextFile(outPath);
    outcome.err = harness::ReadTextFile(errPath);
    return outcome;
}
} // namespace

TEST(ProductCheckProgram, ReportsAndExitCodes)
{
    Outcome clean = RunCheck("\"" DEMO_PRODUCT "\"");
    EXPECT_EQ(clean.exitCode, 0u);
    EXPECT_EQ(clean.out, "No problems found in " DEMO_PRODUCT ".\r\n");

    // A copy with two faults, named relative to the current folder and with the data
    // folder's name given.
    std::string copy = harness::Join(harness::TestRoot(), "Product");
    harness::RemoveTree(copy);
    ASSERT_TRUE(harness::CopyTree(DEMO_PRODUCT, copy));
    std::filesystem::rename(copy + "\\Install", copy + "\\Data");
    std::filesystem::remove(copy + "\\Data\\CLICK.wav");
    std::filesystem::remove(copy + "\\Data\\Url.exe");
    ASSERT_TRUE(SetCurrentDirectoryA(harness::TestRoot().c_str()));
    Outcome broken = RunCheck("Product\\ Data");
    EXPECT_EQ(broken.exitCode, 1u);
    EXPECT_EQ(broken.out,
              "Data\\CLICK.wav: missing; a page button's click plays Windows' default sound "
              "instead\r\n"
              "Data\\Url.exe: missing; the web site button shows text 0x5007\r\n"
              "2 problems found in " +
                  copy + ".\r\n");

    Outcome noFolder = RunCheck("\"" + copy + "\\Nothing\"");
    EXPECT_EQ(noFolder.exitCode, 2u);
    EXPECT_EQ(noFolder.out, "");
    EXPECT_EQ(noFolder.err, "ProductCheck: " + copy + "\\Nothing is not a folder\r\n");

    Outcome usage = RunCheck("");
    EXPECT_EQ(usage.exitCode, 2u);
    EXPECT_EQ(usage.err, "usage: ProductCheck PRODUCT_FOLDER [DATA_FOLDER_NAME]\r\n");
}
