// A library planted under a system library's name (ddraw.dll, winmm.dll, ...) beside the
// launcher, in its data folder or in the current folder. When anything loads it, it leaves
// "<its path>.loaded".
#include <windows.h>

#include <string>

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID)
{
    if (reason == DLL_PROCESS_ATTACH)
    {
        char path[MAX_PATH] = {};
        GetModuleFileNameA(instance, path, MAX_PATH);
        HANDLE marker = CreateFileA((std::string(path) + ".loaded").c_str(), GENERIC_WRITE, 0,
                                    nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (marker != INVALID_HANDLE_VALUE) CloseHandle(marker);
    }
    return TRUE;
}
