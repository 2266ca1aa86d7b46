// The settings' check. Values come from the system's profile reader (as the launcher reads
// them), line numbers from the scan of the file's text.
#include "check_Settings.h"

#include "FrameWork/_lfx/Source/lfx_IniKeys.h"

#include "check_Files.h"
#include "check_Ini.h"
#include "check_IniScan.h"

#include <cctype>

namespace
{
// setup.ini larger than this is not scanned for its lines.
constexpr int64_t kMostIniBytes = 1 << 20;

using Key = LfxIniKey;
using Kind = LfxIniKind;
const auto& kKeys = lfx_ini::kAll;

bool LauncherReads(const std::string& section)
{
    for (const Key& k : kKeys)
        if (SameName(section, k.section)) return true;
    return false;
}

const Key* FindKey(const std::string& section, const std::string& key)
{
    for (const Key& k : kKeys)
        if (SameName(section, k.section) && SameName(key, k.key)) return &k;
    return nullptr;
}

bool WholeNumber(const std::string& text)
{
    if (text.empty()) return false;
    for (char c : text)
        if (!isdigit(static_cast<unsigned char>(c))) return false;
    return true;
}

class SettingsCheck
{
  public:
    SettingsCheck(const ProductFolder& folder, CheckReport& report)
        : m_folder(folder), m_report(report), m_ini(CheckFileName(folder.DataDir(), "setup.ini")),
          m_shown(CheckFileName(folder.anchor, "setup.ini"))
    {
        FileBytes text = ReadFileBytes(CheckFileName(folder.DataDir(), "setup.ini"), kMostIniBytes);
        m_scan = ScanIni(
            std::string_view(reinterpret_cast<const char*>(text.bytes.data()), text.bytes.size()));
    }

    SettingsFacts Run()
    {
        CheckLayout();
        for (const Key& key : kKeys)
        {
            if (key.kind == Kind::Required && Value(key).empty())
                Add(key, Absent(key) + "; " + StopsAtStartUp(key.assertion));
            if (key.kind == Kind::Number) CheckNumber(key);
        }
        CheckRegistry();
        CheckProductKind();
        CheckDirectX();
        CheckPrograms();
        return m_facts;
    }

  private:
    std::string Value(const Key& key) const { return m_ini.String(key.section, key.key); }
    std::string Name(const Key& key) const
    {
        return std::string("[") + key.section + "] " + key.key;
    }
    const Key& KeyOf(const char* section, const char* key) const { return *FindKey(section, key); }

    // The line to point at for a key: its own, else its section's, else none.
    int LineOf(const Key& key) const
    {
        if (const IniKeyLine* line = m_scan.FindKey(key.section, key.key)) return line->line;
        if (const IniSectionLine* section = m_scan.FindSection(key.section)) return section->line;
        return 0;
    }
    std::string Absent(const Key& key) const
    {
        return Name(key) + (m_scan.FindKey(key.section, key.key) ? " is empty" : " is missing");
    }
    void Add(const Key& key, const std::string& text) { m_report.Add(m_shown, LineOf(key), text); }
    void Add(int line, const std::string& text) { m_report.Add(m_shown, line, text); }

    void CheckLayout()
    {
        if (m_scan.utf8Mark && !m_scan.sections.empty())
            Add(1, "starts with a UTF-8 byte-order mark; Windows reads it as part of the first "
                   "line, so [" +
                       m_scan.sections.front().name + "] is not found");
        for (size_t i = 0; i < m_scan.sections.size(); ++i)
        {
            const IniSectionLine& s = m_scan.sections[i];
            const IniSectionLine* first = m_scan.FindSection(s.name);
            if (first != &s && LauncherReads(s.name))
                Add(s.line, "[" + s.name + "] appears again (first on line " +
                                std::to_string(first->line) +
                                "); write its keys under the first one");
        }
        for (const IniKeyLine& k : m_scan.keys)
        {
            if (!LauncherReads(k.section)) continue;
            std::string name = "[" + k.section + "] " + k.key;
            if (!k.hasEquals)
                Add(k.line, "\"" + k.key + "\" in [" + k.section +
                                "] has no \"=\"; the launcher ignores the line");
            else if (!FindKey(k.section, k.key))
                Add(k.line, name + " is not a key the launcher reads");
            else if (const IniKeyLine* first = m_scan.FindKey(k.section, k.key); first != &k)
                Add(k.line, name + " appears again (first on line " + std::to_string(first->line) +
                                "); the launcher uses the first");
        }
    }

    void CheckNumber(const Key& key)
    {
        std::string text = Value(key);
        if (text.empty()) return;
        int32_t read = m_ini.Number(key.section, key.key);
        if (!WholeNumber(text))
            Add(key, Name(key) + " is \"" + text + "\", not a whole number; the launcher " +
                         (read == IniValues::kMissingNumber ? std::string("takes it for missing")
                                                            : "reads " + std::to_string(read)));
        else if (read == IniValues::kMissingNumber)
            Add(key, Name(key) + " is 123456, which the launcher takes for a missing value");
    }

    bool HasNumber(const char* section, const char* key) const
    {
        return !Value(KeyOf(section, key)).empty() &&
               m_ini.Number(section, key) != IniValues::kMissingNumber;
    }

    void CheckRegistry()
    {
        for (const char* key : {"Company", "Product", "Version"})
            if (!Value(KeyOf("Registry", key)).empty()) return;
        const IniSectionLine* section = m_scan.FindSection("Registry");
        Add(section ? section->line : 0,
            "[Registry] Company, Product and Version are all missing; the launcher looks for "
            "the product's registry values directly under HKEY_LOCAL_MACHINE\\Software");
    }

    void CheckProductKind()
    {
        const Key& appType = KeyOf("Startup", "AppType");
        std::string type = Value(appType);
        m_facts.product.demo = type == "Demo";
        m_facts.product.retail = SameName(type, "Retail");
        if (!type.empty() && !m_facts.product.demo && !m_facts.product.retail)
            Add(appType, "[Startup] AppType is \"" + type +
                             "\", neither \"Demo\" (case counts) nor \"Retail\"; the launcher "
                             "treats the product as a full one without a disc check");
        int32_t disks = m_ini.Number("Startup", "Disks");
        m_facts.product.severalDisks = disks > 1 && disks != IniValues::kMissingNumber;
        m_facts.product.memoryTest = HasNumber("SysCheck", "RAM");
        m_facts.product.pagingTest = HasNumber("Buffer", "Product");
        const Key& data = KeyOf("Startup", "Data");
        if (m_facts.product.retail && Value(data).empty())
            Add(data, Absent(data) + "; the disc check of a retail product accepts any disc");
    }

    void CheckDirectX()
    {
        m_facts.product.installDX =
            HasNumber("Startup", "InstallDX") && m_ini.Number("Startup", "InstallDX") != 0;
        if (!m_facts.product.installDX) return;
        const Key& folder = KeyOf("Folders", "DirectXCurrent");
        std::string name = Value(folder);
        if (name.empty())
            Add(folder, Absent(folder) +
                            "; installing DirectX stops the launcher (assertion "
                            "GetIniString(SCT_FOLDERS,VAL_DIRECTX_CURRENT,strDirectX))");
        else if (!IsFolder(CheckFileName(m_folder.productDir, name)))
            Add(folder, Name(folder) + " names " + name +
                            ", which is not in the product folder; installing DirectX shows "
                            "text 0xD047 instead");
    }

    void CheckPrograms()
    {
        std::string dataDir = m_folder.DataDir();
        const Key& launcher = KeyOf("Files", "Launcher");
        std::string name = Value(launcher);
        if (!name.empty() && !IsFile(CheckFileName(m_folder.productDir, name)))
            Add(launcher, Name(launcher) + " names " + name +
                              ", which is not in the product folder; the disc check and the "
                              "hand-over to the installed launcher look for that name");
        const Key& installer = KeyOf("Files", "Installer");
        name = Value(installer);
        if (name.empty())
            Add(installer, Absent(installer) + "; the Install button opens the data folder "
                                               "instead of running an installer");
        else if (!IsFile(CheckFileName(dataDir, name)))
            Add(installer, Name(installer) + " names " + name + ", which is not in " +
                               m_folder.anchor + "; the Install button shows text 0x5007");
        const Key& game = KeyOf("Files", "Product");
        if (Value(game).empty())
            Add(game, Absent(game) + "; Play opens the game's folder instead of starting the "
                                     "game");
        const Key& library = KeyOf("Files", "SetupDll");
        m_facts.setupDll = Value(library);
        if (!m_facts.setupDll.empty() && !SameName(m_facts.setupDll, "VokSetup.dll") &&
            !IsFile(CheckFileName(dataDir, "VokSetup.dll")))
            Add(library, Name(library) + " names " + m_facts.setupDll +
                             ", but the display check always loads VokSetup.dll, which is not "
                             "in " +
                             m_folder.anchor +
                             "; Play shows text 0x7884 and starts "
                             "nothing");
    }

    const ProductFolder& m_folder;
    CheckReport& m_report;
    IniValues m_ini;
    std::string m_shown;
    IniScan m_scan;
    SettingsFacts m_facts;
};
} // namespace

SettingsFacts CheckSettings(const ProductFolder& folder, CheckReport& report)
{
    return SettingsCheck(folder, report).Run();
}
