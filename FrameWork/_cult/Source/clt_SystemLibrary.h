// Loading a library of the system (DirectX and the like) from the system folder only, never
// from the program's or the current folder, so that a file of the same name planted beside
// a program on removable media is never loaded in its place. Header-only, so that the
// setup library and the helper programs use the same rule without the framework.
#pragma once

#include <windows.h>

#include <cstring>

inline HMODULE clt_LoadSystemLibrary(const char* name)
{
    char path[MAX_PATH] = {};
    UINT n = GetSystemDirectoryA(path, MAX_PATH);
    if (n == 0 || n + strlen(name) + 2 > MAX_PATH) return nullptr;
    strcat(path, "\\");
    strcat(path, name);
    return LoadLibraryA(path);
}
