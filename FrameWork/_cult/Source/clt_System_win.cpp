// System utilities (see clt_System.h).
#include "FrameWork/_cult/Source/clt_System.h"

#include "FrameWork/_cult/Source/clt_SystemEntries.h"

namespace
{
bool QueryValue(HKEY root, const char* subKey, const char* name, void* buffer, DWORD size)
{
    HKEY key;
    // Read access only: a program that runs as the invoker gets no more under HKLM.
    if (RegOpenKeyExA(root, subKey, 0, KEY_READ | KEY_WOW64_64KEY, &key) != ERROR_SUCCESS)
        return false;
    LONG rc = RegQueryValueExA(key, name, nullptr, nullptr, static_cast<BYTE*>(buffer), &size);
    RegCloseKey(key);
    return rc == ERROR_SUCCESS;
}
} // namespace

bool clt_RegGetString(HKEY root, const char* subKey, const char* name, CltString& out)
{
    char buffer[1024] = {};
    if (!QueryValue(root, subKey, name, buffer, sizeof buffer)) return false;
    buffer[sizeof buffer - 1] = 0;
    out = buffer;
    return true;
}

bool clt_RegGetDword(HKEY root, const char* subKey, const char* name, uint32_t& out)
{
    unsigned char bytes[4] = {};
    if (!QueryValue(root, subKey, name, bytes, sizeof bytes)) return false;
    out = uint32_t(bytes[0]) | uint32_t(bytes[1]) << 8 | uint32_t(bytes[2]) << 16 |
          uint32_t(bytes[3]) << 24;
    return true;
}

// The file is opened for reading with read sharing only: a file that another process
// holds open without read sharing (or for writing) counts as absent. Opening it without
// any sharing would also make the file unreadable, for that moment, to other launchers
// started at the same time, whose settings would then read as missing.
bool clt_IsFilePresent(const char* path)
{
    HANDLE file = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                              FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    CloseHandle(file);
    return true;
}

bool clt_IsDirectoryPresent(const char* path)
{
    char current[MAX_PATH] = {};
    GetCurrentDirectoryA(MAX_PATH, current);
    bool present = SetCurrentDirectoryA(path) != 0;
    SetCurrentDirectoryA(current);
    return present;
}

bool clt_ShellExecute(const char* file, const char* parameters, const char* folder, bool wait)
{
    SHELLEXECUTEINFOA info = {};
    info.cbSize = sizeof info;
    // No box of the shell's own when the file cannot be started: the caller says so.
    info.fMask = SEE_MASK_FLAG_NO_UI | (wait ? SEE_MASK_NOCLOSEPROCESS : 0);
    info.lpVerb = "open";
    info.lpFile = file;
    info.lpParameters = parameters;
    info.lpDirectory = folder;
    info.nShow = SW_SHOWNORMAL;
    if (!clt_ShellExecuteEx(&info)) return false;
    if (wait && info.hProcess)
    {
        WaitForSingleObject(info.hProcess, INFINITE);
        CloseHandle(info.hProcess);
    }
    return true;
}

bool clt_EnablePrivilege(const char* name)
{
    HANDLE token;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_ADJUST_PRIVILEGES | TOKEN_QUERY, &token))
        return false;
    TOKEN_PRIVILEGES privileges = {};
    privileges.PrivilegeCount = 1;
    privileges.Privileges[0].Attributes = SE_PRIVILEGE_ENABLED;
    // AdjustTokenPrivileges succeeds also when the token lacks the privilege: only the last
    // error tells.
    bool enabled = LookupPrivilegeValueA(nullptr, name, &privileges.Privileges[0].Luid) &&
                   AdjustTokenPrivileges(token, FALSE, &privileges, 0, nullptr, nullptr) &&
                   GetLastError() == ERROR_SUCCESS;
    CloseHandle(token);
    return enabled;
}
