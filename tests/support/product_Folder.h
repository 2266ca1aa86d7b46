// What the tests that run in a launcher's process under Wine lay out: scratch folders and
// whole files, registry values under HKEY_LOCAL_MACHINE, and product folders as a publisher
// ships them (the launcher, and a data folder with setup.ini and the setup library), with a
// setup.ini whose registry key and mutex names are unique to the test.
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
    fs::path root = fs::weakly_canonical(fs::path(ExeFolder()) / ".." / "test-data" /
                                         fs::path(path).stem());
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

// The tests' setup.ini (tests/support/setup.ini, CLT_TEST_SETUP_INI) with its tag;
// 'tag' makes the registry key and the mutexes unique.
class Ini
{
  public:
    explicit Ini(const std::string& tag)
    {
        std::ifstream in(CLT_TEST_SETUP_INI);
        std::string section;
        for (std::string line; std::getline(in, line);)
            if (line.rfind("[", 0) == 0)
                section = line.substr(1, line.find(']') - 1);
            else if (size_t eq = line.find('='); eq != std::string::npos && line[0] != ';')
            {
                std::string value = line.substr(eq + 1);
                if (size_t at = value.find("@TAG@"); at != std::string::npos)
                    value.replace(at, 5, tag);
                m_entries.push_back({section, line.substr(0, eq), value});
            }
    }
    // Sets a key, or removes it when the value is null.
    Ini& Set(const std::string& section, const std::string& key, const char* value)
    {
        auto at = m_entries.end(); // a new key goes after the last of its section
        for (auto e = m_entries.begin(); e != m_entries.end(); ++e)
            if (e->section == section && e->key == key)
            {
                if (!value) return m_entries.erase(e), *this;
                return e->value = value, *this;
            }
            else if (e->section == section)
                at = e + 1;
        if (value) m_entries.insert(at, {section, key, value});
        return *this;
    }
    std::string Text() const
    {
        std::string text, section;
        for (const Entry& e : m_entries)
        {
            if (e.section != section) text += "[" + (section = e.section) + "]\r\n";
            text += e.key + "=" + e.value + "\r\n";
        }
        return text;
    }
    std::string RegistryKey() const
    {
        std::string key = "Software";
        for (const Entry& e : m_entries)
            if (e.section == "Registry") key += "\\" + e.value;
        return key;
    }

  private:
    struct Entry
    {
        std::string section, key, value;
    };
    std::vector<Entry> m_entries;
};

// Lays out folder\Launcher.exe and folder\Install\ with setup.ini and the test build of the
// setup library.
inline void MakeProduct(const std::string& folder, const Ini& ini)
{
    CopyInto(Join(ExeFolder(), "Launcher.exe"), folder);
    CopyInto(Join(ExeFolder(), "VokSetup.dll"), Join(folder, "Install"));
    WriteTextFile(Join(folder, "Install\\setup.ini"), ini.Text());
}
