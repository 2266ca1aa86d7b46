// Loading a library of the system (DirectX and the like) from the system folder only, never
// from the program's or the current folder, so that a file of the same name planted beside
// a program on removable media is never loaded in its place; and looking up a library's
// entry as the function type it has. Header-only, so that the setup library and the helper
// programs use the same rules without the framework. (Windows only.)
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

// Loads a library of the program's own (the setup library) by its full path. The libraries
// it needs are looked for beside it, then in the system folder: the programs look for
// libraries in the system folder only (clt_SystemEntries_win.cpp). A system that knows
// neither that rule nor these flags loads it as it always did.
inline HMODULE clt_LoadLibraryByPath(const char* path)
{
    HMODULE library = LoadLibraryExA(
        path, nullptr, LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    if (!library && GetLastError() == ERROR_INVALID_PARAMETER) library = LoadLibraryA(path);
    return library;
}

// The library's entry of that name as a function of type Fn, or null.
template <typename Fn> Fn clt_GetEntry(HMODULE library, const char* name)
{
    return library ? reinterpret_cast<Fn>(reinterpret_cast<void*>(GetProcAddress(library, name)))
                   : nullptr;
}
