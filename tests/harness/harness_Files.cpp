// Files, folders and registry values for the tests.
#include "harness/wine_Harness.h"

namespace harness
{
std::string ExeFolder()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string s(path);
    return s.substr(0, s.find_last_of('\\'));
}

std::string TestRoot()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string s(path);
    std::string name = s.substr(s.find_last_of('\\') + 1);
    name = name.substr(0, name.find_last_of('.'));
    std::string root = Join(Join(ExeFolder(), "..\\test-data"), name);
    char full[MAX_PATH] = {};
    GetFullPathNameA(root.c_str(), MAX_PATH, full, nullptr);
    MakeFolders(full);
    return full;
}

std::string Join(const std::string& a, const std::string& b)
{
    if (a.empty()) return b;
    return (a.back() == '\\' ? a : a + "\\") + b;
}

bool MakeFolders(const std::string& path)
{
    for (size_t i = 3; i <= path.size(); ++i)
        if (i == path.size() || path[i] == '\\')
            CreateDirectoryA(path.substr(0, i).c_str(), nullptr);
    return GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY;
}

bool WriteTextFile(const std::string& path, const std::string& content)
{
    MakeFolders(path.substr(0, path.find_last_of('\\')));
    FILE* f = fopen(path.c_str(), "wb");
    if (!f) return false;
    fwrite(content.data(), 1, content.size(), f);
    return fclose(f) == 0;
}

std::string ReadTextFile(const std::string& path)
{
    FILE* f = fopen(path.c_str(), "rb");
    if (!f) return std::string();
    std::string content;
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, f)) > 0)
        content.append(buffer, n);
    fclose(f);
    return content;
}

bool RemoveTree(const std::string& path)
{
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA(Join(path, "*").c_str(), &data);
    if (find != INVALID_HANDLE_VALUE)
    {
        do
        {
            std::string name = data.cFileName;
            if (name == "." || name == "..") continue;
            std::string full = Join(path, name);
            if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                RemoveTree(full);
            else
            {
                SetFileAttributesA(full.c_str(), FILE_ATTRIBUTE_NORMAL);
                DeleteFileA(full.c_str());
            }
        } while (FindNextFileA(find, &data));
        FindClose(find);
    }
    return RemoveDirectoryA(path.c_str()) ||
           GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES;
}

bool CopyInto(const std::string& file, const std::string& folder, const std::string& newName)
{
    std::string name = newName.empty() ? file.substr(file.find_last_of('\\') + 1) : newName;
    MakeFolders(folder);
    return CopyFileA(file.c_str(), Join(folder, name).c_str(), FALSE) != 0;
}

namespace
{
bool SetRegValue(const std::string& key, const std::string& name, DWORD type, const void* data,
                 DWORD size)
{
    HKEY handle;
    if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                        &handle, nullptr) != ERROR_SUCCESS)
        return false;
    LONG rc = RegSetValueExA(handle, name.c_str(), 0, type, static_cast<const BYTE*>(data), size);
    RegCloseKey(handle);
    return rc == ERROR_SUCCESS;
}
} // namespace

bool SetRegString(const std::string& key, const std::string& name, const std::string& value)
{
    return SetRegValue(key, name, REG_SZ, value.c_str(), static_cast<DWORD>(value.size() + 1));
}

bool SetRegDword(const std::string& key, const std::string& name, DWORD value)
{
    return SetRegValue(key, name, REG_DWORD, &value, sizeof value);
}

bool DeleteRegTree(const std::string& key)
{
    LONG rc = RegDeleteTreeA(HKEY_LOCAL_MACHINE, key.c_str());
    return rc == ERROR_SUCCESS || rc == ERROR_FILE_NOT_FOUND;
}
} // namespace harness
