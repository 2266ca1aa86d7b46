// WinProbe: looks at a program's main window from outside, for test drivers that run
// outside Wine. The window is the visible or minimised top-level window of a framework
// class ("CltWin:...") with the given text.
//
// Usage: WinProbe.exe TEXT COMMAND [FILE]
//   rect      prints "left top right bottom" of the window
//   iconic    prints 1 when the window is minimised, else 0
//   visible   prints 1 when the window is visible, else 0
//   activate  another window becomes active, then this one (as a player who switches to
//             another program and back through the task bar)
//   region    prints "count left top right bottom" of the window's region, or "none"
//   shot FILE writes the screen under the window's rectangle, as the system reads it back
//             (through the palette on a display of 8 bits per pixel), as a 24-bit BMP
//   close     asks the window to close as the taskbar's "Close window" does
//   endsession
//             prints the window's answer to "may the session end?", then tells it that it
//             ends, as Windows does at a log-off
//   resources prints the GDI and USER objects of the window's process and its private
//             bytes in KiB (its commit charge: Wine leaves PrivateUsage 0)
//   comctl    prints 6 when the window's process has loaded the common controls of version
//             6 (its manifest asks for today's look), 5 for the plain library, 0 for none
//   icons     prints what the window answers for its big, small and small-2 icons: "icon"
//             for a real icon, 0 for none (the class icon is shown), else "bad"
// Exit code 0 when the window was found, 1 when not, 2 on usage.
#include "harness/wine_Harness.h"

#include <windows.h>
#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace
{
// The screen under the rectangle as a bottom-up 24-bit BMP file.
bool SaveScreen(const RECT& r, const char* path)
{
    int width = r.right - r.left, height = r.bottom - r.top;
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* bits = nullptr;
    HDC screen = GetDC(nullptr);
    HDC memory = CreateCompatibleDC(screen);
    HBITMAP dib = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    HGDIOBJ old = SelectObject(memory, dib);
    BitBlt(memory, 0, 0, width, height, screen, r.left, r.top, SRCCOPY);
    GdiFlush();
    DWORD rowBytes = (DWORD(width) * 3 + 3) & ~3u, imageBytes = rowBytes * DWORD(height);
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof info.bmiHeader;
    file.bfSize = file.bfOffBits + imageBytes;
    bool written = false;
    if (FILE* f = fopen(path, "wb"))
    {
        written = fwrite(&file, sizeof file, 1, f) == 1 &&
                  fwrite(&info.bmiHeader, sizeof info.bmiHeader, 1, f) == 1 &&
                  fwrite(bits, imageBytes, 1, f) == 1;
        fclose(f);
    }
    SelectObject(memory, old);
    DeleteObject(dib);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return written;
}
// 6 when the process has the common controls of version 6 loaded (from their
// side-by-side assembly, as a manifest asks), 5 for the plain library, 0 for none. (Wine's
// copies both carry the file version 5.81: the folder tells them apart.)
unsigned long CommonControlsVersion(HANDLE process)
{
    HMODULE modules[512];
    DWORD bytes = 0;
    unsigned long version = 0;
    if (process && EnumProcessModules(process, modules, sizeof modules, &bytes))
        for (DWORD i = 0; i < bytes / sizeof(HMODULE) && i < 512; ++i)
        {
            char path[MAX_PATH] = {};
            GetModuleFileNameExA(process, modules[i], path, MAX_PATH);
            CharLowerA(path);
            const char* name = strrchr(path, '\\');
            if (!name || strcmp(name + 1, "comctl32.dll")) continue;
            version =
                strstr(path, "\\winsxs\\") && strstr(path, "common-controls_6595b64144ccf1df_6.")
                    ? 6
                    : std::max(version, 5ul);
        }
    return version;
}

// The window's process, opened for reading its modules and counters (closed by the caller).
HANDLE OpenWindowProcess(HWND w)
{
    DWORD pid = 0;
    GetWindowThreadProcessId(w, &pid);
    return OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid);
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 3 && !(argc == 4 && !strcmp(argv[2], "shot")))
    {
        fprintf(stderr,
                "usage: WinProbe.exe TEXT "
                "rect|iconic|visible|activate|region|close|endsession|resources|comctl|icons|"
                "shot FILE\n");
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
    else if (!strcmp(command, "shot"))
    {
        RECT r;
        GetWindowRect(w, &r);
        if (!SaveScreen(r, argv[3])) return 1;
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
    else if (!strcmp(command, "close"))
        PostMessageA(w, WM_SYSCOMMAND, SC_CLOSE, 0);
    else if (!strcmp(command, "endsession"))
    {
        DWORD_PTR answer = 0;
        SendMessageTimeoutA(w, WM_QUERYENDSESSION, 0, 0, SMTO_ABORTIFHUNG, 5000, &answer);
        printf("%lu\n", static_cast<unsigned long>(answer));
        fflush(stdout);
        SendMessageTimeoutA(w, WM_ENDSESSION, TRUE, 0, SMTO_ABORTIFHUNG, 5000, nullptr);
    }
    else if (!strcmp(command, "resources"))
    {
        HANDLE process = OpenWindowProcess(w);
        PROCESS_MEMORY_COUNTERS_EX memory = {};
        GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                             sizeof memory);
        printf("%lu %lu %lu\n", GetGuiResources(process, GR_GDIOBJECTS),
               GetGuiResources(process, GR_USEROBJECTS),
               static_cast<unsigned long>(memory.PagefileUsage / 1024));
        CloseHandle(process);
    }
    else if (!strcmp(command, "comctl"))
    {
        HANDLE process = OpenWindowProcess(w);
        printf("%lu\n", CommonControlsVersion(process));
        if (process) CloseHandle(process);
    }
    else if (!strcmp(command, "icons"))
        for (WPARAM kind : {ICON_BIG, ICON_SMALL, ICON_SMALL2})
        {
            DWORD_PTR icon = 0;
            SendMessageTimeoutA(w, WM_GETICON, kind, 0, SMTO_ABORTIFHUNG, 5000, &icon);
            ICONINFO info;
            bool real = icon && GetIconInfo(reinterpret_cast<HICON>(icon), &info);
            if (real) DeleteObject(info.hbmColor), DeleteObject(info.hbmMask);
            printf(kind == ICON_SMALL2 ? "%s\n" : "%s ", real ? "icon" : icon ? "bad" : "0");
        }
    else
        return 2;
    fflush(stdout);
    return 0;
}
