// A stand-in for the programs the launcher starts (the installed launcher, the game, the
// installer), and a holder of named mutexes.
//
// Without -HOLD it appends to "<its own path>.log" one line per run:
//   args=<the command line after the program's own name>|cwd=<the current folder>
// and ends with exit code 0; when "<path>.hold" exists, it first opens a window that takes
// the activation, writes "<path>.ready" and waits until "<path>.release" exists (at most
// 60 s), then removes the three files: the next run does not hold.
// With -HOLD=NAME[,NAME...] it creates and holds those mutexes, writes "<path>.ready",
// and waits as above.
// With -LOAD=NAME it loads the library NAME the ordinary way (by name, searched for
// from its own folder on) and ends with exit code 0 if it loaded, 1 if not.
#include "product/demo/demo_Common.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace
{
std::string OwnPath()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return path;
}

void Touch(const std::string& path)
{
    if (FILE* f = fopen(path.c_str(), "wb")) fclose(f);
}

bool Exists(const std::string& path)
{
    return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Says it is ready, then waits for the test to release it.
void Hold(const std::string& self)
{
    Touch(self + ".ready");
    for (int i = 0; i < 600 && !Exists(self + ".release"); ++i)
    {
        MSG msg;
        while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageA(&msg);
        Sleep(100);
    }
}
} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int)
{
    const char* args = demo::Arguments();
    std::string self = OwnPath();
    if (strncmp(args, "-LOAD=", 6) == 0) return LoadLibraryA(args + 6) ? 0 : 1;
    if (strncmp(args, "-HOLD=", 6) == 0)
    {
        std::vector<HANDLE> held;
        std::string names = args + 6;
        for (char* name = strtok(names.data(), ","); name; name = strtok(nullptr, ","))
            held.push_back(CreateMutexA(nullptr, TRUE, name));
        Hold(self);
        for (HANDLE h : held)
            CloseHandle(h);
        return 0;
    }
    char cwd[MAX_PATH] = {};
    GetCurrentDirectoryA(MAX_PATH, cwd);
    // One write to a file opened for appending only: the system puts it at the end whole,
    // even when another run of this program writes at the same moment.
    std::string line = std::string("args=") + args + "|cwd=" + cwd + "\n";
    HANDLE log =
        CreateFileA((self + ".log").c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (log != INVALID_HANDLE_VALUE)
    {
        DWORD written = 0;
        WriteFile(log, line.data(), DWORD(line.size()), &written, nullptr);
        CloseHandle(log);
    }
    if (Exists(self + ".hold"))
    {
        // A window of its own that takes the activation, as the programs it stands in for.
        HWND window = CreateWindowExA(0, "STATIC", "Holding", WS_POPUP | WS_VISIBLE, 0, 0, 200, 100,
                                      nullptr, nullptr, nullptr, nullptr);
        SetForegroundWindow(window);
        Hold(self);
        DestroyWindow(window);
        for (const char* end : {".hold", ".ready", ".release"})
            DeleteFileA((self + end).c_str());
    }
    return 0;
}
