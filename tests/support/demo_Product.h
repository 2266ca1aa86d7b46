// Test fixture: product folders laid out as a publisher ships them (the launcher, and a
// data folder with setup.ini and the setup library), with a setup.ini of the test's own
// whose registry key and mutex names are unique to the test.
#pragma once

#include "harness/wine_Harness.h"

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

namespace demo
{
class Ini
{
  public:
    // The demo product's keys; 'tag' makes the registry key and the mutexes unique.
    explicit Ini(const std::string& tag)
    {
        Set("Registry", "Company", "Launcher Tests");
        Set("Registry", "Product", tag);
        Set("Registry", "Version", "1.0");
        Set("Startup", "InstallDX", "1");
        Set("Startup", "AppType", "Retail");
        Set("Startup", "DirectXVer", "7.0");
        Set("Startup", "Disks", "1");
        Set("Startup", "Data", "TARN");
        Set("Files", "Launcher", "Launcher.exe");
        Set("Files", "SetupDll", "VokSetup.dll");
        Set("Files", "Product", "Tarn.exe");
        Set("Files", "Installer", "TarnSetup.exe");
        Set("Folders", "Product", "Game");
        Set("Folders", "DirectXCurrent", "DirectX");
        Set("Url", "DirectX", "https://directx.example");
        Set("Mutex", "Launcher", "LauncherMutex-" + tag);
        Set("Mutex", "Product", "GameMutex-" + tag);
    }
    void Set(const std::string& section, const std::string& key, const std::string& value)
    {
        for (Entry& e : m_entries)
            if (e.section == section && e.key == key)
            {
                e.value = value;
                return;
            }
        m_entries.push_back({section, key, value});
    }
    void Remove(const std::string& section, const std::string& key)
    {
        m_entries.erase(std::remove_if(m_entries.begin(), m_entries.end(),
                                       [&](const Entry& e)
                                       { return e.section == section && e.key == key; }),
                        m_entries.end());
    }
    std::string Get(const std::string& section, const std::string& key) const
    {
        for (const Entry& e : m_entries)
            if (e.section == section && e.key == key) return e.value;
        return "";
    }
    std::string Text() const
    {
        std::string text;
        std::vector<std::string> sections;
        for (const Entry& e : m_entries)
            if (std::find(sections.begin(), sections.end(), e.section) == sections.end())
                sections.push_back(e.section);
        for (const std::string& s : sections)
        {
            text += "[" + s + "]\r\n";
            for (const Entry& e : m_entries)
                if (e.section == s) text += e.key + "=" + e.value + "\r\n";
        }
        return text;
    }
    std::string RegistryKey() const
    {
        std::string key = "Software";
        for (const char* part : {"Company", "Product", "Version"})
            if (!Get("Registry", part).empty()) key += "\\" + Get("Registry", part);
        return key;
    }

  private:
    struct Entry
    {
        std::string section, key, value;
    };
    std::vector<Entry> m_entries;
};

// Lays out folder\Launcher.exe and folder\<anchor>\ with setup.ini and VokSetup.dll.
inline void MakeProduct(const std::string& folder, const Ini& ini,
                        const std::string& anchor = "Install")
{
    using namespace harness;
    std::string data = anchor.empty() ? folder : Join(folder, anchor);
    MakeFolders(data);
    CopyInto(Join(ExeFolder(), "Launcher.exe"), folder);
    CopyInto(Join(ExeFolder(), "VokSetup.dll"), data);
    WriteTextFile(Join(data, "setup.ini"), ini.Text());
}

// Registers the product as installed in folder, from folder (fresh registry values).
inline void MarkInstalled(const Ini& ini, const std::string& folder)
{
    using namespace harness;
    DeleteRegTree(ini.RegistryKey());
    SetRegDword(ini.RegistryKey(), "Installed", 2);
    SetRegString(ini.RegistryKey(), "Install Path", folder);
    SetRegString(ini.RegistryKey(), "Source Dir", folder);
}

} // namespace demo
