// WinProbe: looks at a program's main window from outside, for test drivers that run
// outside Wine. The window is the visible or minimised top-level window of a framework
// class ("CltWin:...") with the given text.
//
// Usage: WinProbe.exe TEXT COMMAND
//   rect      prints "left top right bottom" of the window
//   iconic    prints 1 when the window is minimised, else 0
//   visible   prints 1 when the window is visible, else 0
//   activate  another window becomes active, then this one (as a player who switches to
//             another program and back through the task bar)
//   region    prints "count left top right bottom" of the window's region, or "none"
// Exit code 0 when the window was found, 1 when not, 2 on usage.
#include "harness/wine_Harness.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <vector>

int main(int argc, char** argv)
{
    if (argc != 3)
    {
        fprintf(stderr, "usage: WinProbe.exe TEXT rect|iconic|visible|activate|region\n");
        return 2;
    }
    HWND w = harness::FindFrameworkWindow(argv[1]);
    if (!w) return 1;
    const char* command = argv[2];
    if (!strcmp(command, "rect"))
    {
        RECT r;
        GetWindowRect(w, &r);
        printf("%ld %ld %ld %ld\n", r.left, r.top, r.right, r.bottom);
    }
    else if (!strcmp(command, "iconic"))
        printf("%d\n", IsIconic(w) ? 1 : 0);
    else if (!strcmp(command, "visible"))
        printf("%d\n", IsWindowVisible(w) ? 1 : 0);
    else if (!strcmp(command, "activate"))
    {
        HWND other = CreateWindowExA(0, "STATIC", "WinProbe", WS_POPUP | WS_VISIBLE, 0, 0, 1, 1,
                                     nullptr, nullptr, nullptr, nullptr);
        SetForegroundWindow(other);
        SetForegroundWindow(w);
        DestroyWindow(other);
    }
    else if (!strcmp(command, "region"))
    {
        HRGN region = CreateRectRgn(0, 0, 0, 0);
        if (GetWindowRgn(w, region) == ERROR)
            printf("none\n");
        else
        {
            std::vector<char> data(GetRegionData(region, 0, nullptr));
            auto* rd = reinterpret_cast<RGNDATA*>(data.data());
            GetRegionData(region, DWORD(data.size()), rd);
            printf("%lu %ld %ld %ld %ld\n", rd->rdh.nCount, rd->rdh.rcBound.left,
                   rd->rdh.rcBound.top, rd->rdh.rcBound.right, rd->rdh.rcBound.bottom);
        }
        DeleteObject(region);
    }
    else
        return 2;
    fflush(stdout);
    return 0;
}
