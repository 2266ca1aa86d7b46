// bare_Window: the yardstick for the launcher's start and page change. A bare Win32
// program that opens a captionless window of a bitmap's size, centred on the desktop as
// the launcher's window is, and paints the bitmap with one BitBlt. A click (on release)
// swaps in the bitmap's negative and repaints the whole window with one BitBlt.
//
// Usage: bare_Window.exe BITMAP.bmp
#include <windows.h>

#include <cstring>

namespace
{
HBITMAP g_pictures[2];
int g_shown = 0;
int g_width = 0, g_height = 0;

// The picture's negative, made once at start so that a click costs only the BitBlt.
HBITMAP Negative(HDC screen, HBITMAP picture)
{
    HDC from = CreateCompatibleDC(screen), to = CreateCompatibleDC(screen);
    HBITMAP negative = CreateCompatibleBitmap(screen, g_width, g_height);
    HGDIOBJ oldFrom = SelectObject(from, picture), oldTo = SelectObject(to, negative);
    BitBlt(to, 0, 0, g_width, g_height, from, 0, 0, NOTSRCCOPY);
    SelectObject(from, oldFrom);
    SelectObject(to, oldTo);
    DeleteDC(from);
    DeleteDC(to);
    return negative;
}

void Paint(HWND window)
{
    PAINTSTRUCT ps;
    HDC dc = BeginPaint(window, &ps);
    HDC memory = CreateCompatibleDC(dc);
    HGDIOBJ old = SelectObject(memory, g_pictures[g_shown]);
    BitBlt(dc, 0, 0, g_width, g_height, memory, 0, 0, SRCCOPY);
    SelectObject(memory, old);
    DeleteDC(memory);
    EndPaint(window, &ps);
}

LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_PAINT: Paint(window); return 0;
    case WM_ERASEBKGND: return 1;
    case WM_LBUTTONUP:
        g_shown ^= 1;
        InvalidateRect(window, nullptr, FALSE);
        return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}
} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int)
{
    // The path, without the quotes around it.
    char path[MAX_PATH] = {};
    lstrcpynA(path, commandLine + (*commandLine == '"'), MAX_PATH);
    if (char* quote = strchr(path, '"')) *quote = 0;
    g_pictures[0] = static_cast<HBITMAP>(
        LoadImageA(nullptr, path, IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE | LR_CREATEDIBSECTION));
    BITMAP size;
    if (!g_pictures[0] || !GetObjectA(g_pictures[0], sizeof size, &size)) return 1;
    g_width = size.bmWidth, g_height = size.bmHeight;
    HDC screen = GetDC(nullptr);
    g_pictures[1] = Negative(screen, g_pictures[0]);
    ReleaseDC(nullptr, screen);

    WNDCLASSA wc = {};
    wc.lpfnWndProc = WindowProc;
    wc.hInstance = instance;
    wc.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    wc.lpszClassName = "BareWindow";
    RegisterClassA(&wc);
    RECT desktop;
    GetClientRect(GetDesktopWindow(), &desktop);
    HWND window = CreateWindowExA(0, "BareWindow", "bare", WS_POPUP, (desktop.right - g_width) >> 1,
                                  (desktop.bottom - g_height) >> 1, g_width, g_height, nullptr,
                                  nullptr, instance, nullptr);
    ShowWindow(window, SW_SHOWNORMAL);
    UpdateWindow(window);
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    return 0;
}
