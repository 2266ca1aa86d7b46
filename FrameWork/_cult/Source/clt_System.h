// System utilities: registry values, file and folder presence, starting programs through
// the shell. They hold no state, trace nothing and never assert; each reports success as
// a boolean and leaves the output untouched on failure.
// (Windows only.)
#pragma once

#include "FrameWork/_cult/Source/clt_String.h"

#include <cstdint>
#include <windows.h>

// Opens the key for reading, in the system's native (64-bit) registry view in both builds,
// where the product's installer writes its values, and reads into 1024 bytes (text) or 4
// bytes (number); the stored type is not checked, and a value that does not fit counts as
// missing.
bool clt_RegGetString(HKEY root, const char* subKey, const char* name, CltString& out);
bool clt_RegGetDword(HKEY root, const char* subKey, const char* name, uint32_t& out);

// True when the file exists and can be opened for reading: a folder, or a file that
// another process holds open without read sharing or for writing, counts as absent.
bool clt_IsFilePresent(const char* path);
// True when the folder can be made the current folder; the current folder is restored.
bool clt_IsDirectoryPresent(const char* path);
// Starts the file with the verb "open", without any box of the shell's when that fails;
// with 'wait', returns once the started process has ended (at once when the shell hands
// the request to a running program).
bool clt_ShellExecute(const char* file, const char* parameters, const char* folder, bool wait);

// Enables a privilege the process's token holds (such as "SeShutdownPrivilege", which
// ExitWindowsEx needs on Windows NT-based systems); false when the token lacks it.
bool clt_EnablePrivilege(const char* name);

inline bool clt_IsFilePresent(const CltString& path)
{
    return clt_IsFilePresent(path.c_str());
}
inline bool clt_IsDirectoryPresent(const CltString& path)
{
    return clt_IsDirectoryPresent(path.c_str());
}
