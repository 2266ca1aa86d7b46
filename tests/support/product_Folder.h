// What the tests that run in a launcher's process under Wine lay out: scratch folders and
// whole files, registry values under HKEY_LOCAL_MACHINE, and product folders as a publisher
// ships them (the launcher, and a data folder with setup.ini and the setup library).
#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;

inline std::string Join(const std::string& a, const std::string& b)
{
    return a.empty() ? b : (a.back() == '\\' ? a : a + "\\") + b;
}

// The folder of the running test program.
inline std::string ExeFolder()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return fs::path(path).parent_path().string();
}

// A scratch folder of this test program's own, made if needed.
inline std::string TestRoot()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    fs::path root =
        fs::weakly_canonical(fs::path(ExeFolder()) / ".." / "test-data" / fs::path(path).stem());
    fs::create_directories(root);
    return root.string();
}

inline void WriteTextFile(const std::string& path, const std::string& content)
{
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

// The file's bytes; empty when it cannot be read.
inline std::string ReadTextFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

inline void CopyInto(const std::string& file, const std::string& folder, std::string name = "")
{
    fs::create_directories(folder);
    if (name.empty()) name = fs::path(file).filename().string();
    fs::copy_file(file, Join(folder, name), fs::copy_options::overwrite_existing);
}

inline void RemoveTree(const std::string& path)
{
    std::error_code ignored;
    fs::remove_all(path, ignored);
}

// A value under HKEY_LOCAL_MACHINE\key: a string, or a DWORD for a number.
inline bool SetReg(const std::string& key, const char* name, const std::string& value)
{
    return RegSetKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_SZ, value.c_str(),
                           DWORD(value.size() + 1)) == ERROR_SUCCESS;
}
inline bool SetReg(const std::string& key, const char* name, DWORD value)
{
    return RegSetKeyValueA(HKEY_LOCAL_MACHINE, key.c_str(), name, REG_DWORD, &value,
                           sizeof value) == ERROR_SUCCESS;
}
inline void DeleteRegTree(const std::string& key)
{
    RegDeleteTreeA(HKEY_LOCAL_MACHINE, key.c_str());
}

// A key of setup.ini to set, or to remove (value null).
struct IniValue
{
    const char *section, *key, *value;
};

// Lays out folder\Launcher.exe and folder\Install\ with the test build of the setup library and
// the tests' setup.ini (tests/support/setup.ini, CLT_TEST_SETUP_INI) with its tag, which makes
// the registry key and the mutexes unique, and the values changed by the system's profile
// writer.
inline void MakeProduct(const std::string& folder, const std::string& tag,
                        const std::vector<IniValue>& values = {})
{
    CopyInto(Join(ExeFolder(), "Launcher.exe"), folder);
    CopyInto(Join(ExeFolder(), "VokSetup.dll"), Join(folder, "Install"));
    std::string ini = ReadTextFile(CLT_TEST_SETUP_INI), path = Join(folder, "Install\\setup.ini");
    for (size_t at; (at = ini.find("@TAG@")) != std::string::npos;)
        ini.replace(at, 5, tag);
    WriteTextFile(path, ini);
    for (const IniValue& v : values)
        WritePrivateProfileStringA(v.section, v.key, v.value, path.c_str());
}

// The registry key that the tests' setup.ini names with this tag.
inline std::string ProductKey(const std::string& tag)
{
    return "Software\\Launcher Tests\\" + tag + "\\1.0";
}
