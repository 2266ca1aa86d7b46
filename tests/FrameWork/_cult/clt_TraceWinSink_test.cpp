// CltTraceWinSink against real windows of the two viewer classes in this process.
#include "test_Support.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace
{
struct Received
{
    std::string window;
    ULONG_PTR dwData;
    DWORD cbData;
    std::string text;
};
std::vector<Received> g_received;

LRESULT CALLBACK ViewerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_COPYDATA) return DefWindowProcA(window, message, wParam, lParam);
    auto* record = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    char className[64] = {};
    GetClassNameA(window, className, sizeof className);
    g_received.push_back({className, record->dwData, record->cbData,
                          std::string(static_cast<const char*>(record->lpData), record->cbData)});
    return TRUE;
}

HWND OpenViewer(const char* className)
{
    WNDCLASSA wc = {};
    wc.lpfnWndProc = ViewerProc;
    wc.hInstance = GetModuleHandleA(nullptr);
    wc.lpszClassName = className;
    RegisterClassA(&wc);
    return CreateWindowExA(0, className, "", WS_POPUP, 0, 0, 10, 10, nullptr, nullptr, wc.hInstance,
                           nullptr);
}
} // namespace

TEST(CltTraceWinSink, PrefersTraceWinThenMfxAndDropsTextsWithoutViewer)
{
    TestScope scope;
    CltTraceWinSink sink;
    g_received.clear();
    clt_Trace("nobody listens");

    HWND mfx = OpenViewer("MfxTraceWindow");
    ASSERT_NE(mfx, nullptr);
    clt_Trace("abc");
    HWND twin = OpenViewer("TraceWin TRACE Window");
    ASSERT_NE(twin, nullptr);
    clt_Trace("%s #%d\n", "second", 2);
    DestroyWindow(twin);
    clt_Trace("back to mfx");
    DestroyWindow(mfx);
    clt_Trace("dropped again");

    ASSERT_EQ(g_received.size(), 3u);
    EXPECT_EQ(g_received[0].window, "MfxTraceWindow");
    EXPECT_EQ(g_received[0].dwData, 0x6E697774u);
    EXPECT_EQ(g_received[0].cbData, 3u);
    EXPECT_EQ(g_received[0].text, "abc");
    EXPECT_EQ(g_received[1].window, "TraceWin TRACE Window");
    EXPECT_EQ(g_received[1].text, "second #2\n");
    EXPECT_EQ(g_received[1].cbData, 10u);
    EXPECT_EQ(g_received[2].window, "MfxTraceWindow");
    EXPECT_EQ(g_received[2].text, "back to mfx");
    EXPECT_TRUE(scope.sink->texts.empty()); // the TraceWin sink replaced it
}
