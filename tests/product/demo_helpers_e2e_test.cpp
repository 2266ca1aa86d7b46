// The demo product's system check, as the launcher starts it in the data folder: it shows
// the machine's figures and ends when its window is closed.
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
} // namespace

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
