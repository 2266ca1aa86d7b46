// Small helpers shared by the demo product's programs (the game, Doc.exe, Url.exe,
// Syscheck.exe): their own folder, and setup.ini values of the product.
// (Windows only.)
#pragma once

#include <windows.h>

#include <string>

namespace demo
{
// The folder of the running program, without a trailing backslash.
inline std::string OwnFolder()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string s(path);
    return s.substr(0, s.find_last_of('\\'));
}

inline std::string OwnName()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string s(path);
    return s.substr(s.find_last_of('\\') + 1);
}

// A value of the first setup.ini found in the given folders, or 'fallback'.
inline std::string SetupValue(std::initializer_list<std::string> folders, const char* section,
                              const char* key, const char* fallback)
{
    for (const std::string& folder : folders)
    {
        std::string ini = folder + "\\setup.ini";
        if (GetFileAttributesA(ini.c_str()) == INVALID_FILE_ATTRIBUTES) continue;
        char value[MAX_PATH] = {};
        GetPrivateProfileStringA(section, key, fallback, value, MAX_PATH, ini.c_str());
        return value;
    }
    return fallback;
}

// Registers the window class, opens the program's one window and runs its message loop
// until the window is destroyed (its procedure posts the quit message); returns the
// quit message's code.
inline int RunMainWindow(HINSTANCE instance, const char* className, const char* title,
                         WNDPROC procedure, int width, int height, int show)
{
    WNDCLASSA wc = {};
    wc.lpfnWndProc = procedure;
    wc.hInstance = instance;
    wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    wc.lpszClassName = className;
    RegisterClassA(&wc);
    HWND window = CreateWindowExA(0, className, title, WS_OVERLAPPEDWINDOW, 100, 100, width, height,
                                  nullptr, nullptr, instance, nullptr);
    ShowWindow(window, show);
    MSG msg = {};
    while (GetMessageA(&msg, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    return static_cast<int>(msg.wParam);
}

// The command line after the program's own name.
inline const char* Arguments()
{
    const char* p = GetCommandLineA();
    if (*p == '"')
    {
        for (++p; *p && *p != '"'; ++p)
        {
        }
        if (*p) ++p;
    }
    else
        while (*p && *p != ' ')
            ++p;
    while (*p == ' ')
        ++p;
    return p;
}
} // namespace demo
