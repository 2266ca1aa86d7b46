// ScanIni: the section and key lines of a profile file, with their line numbers.
#include "check_IniScan.h"

#include <cctype>

namespace
{
std::string_view Trim(std::string_view s)
{
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t'))
        s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r'))
        s.remove_suffix(1);
    return s;
}
} // namespace

bool SameName(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (tolower(static_cast<unsigned char>(a[i])) != tolower(static_cast<unsigned char>(b[i])))
            return false;
    return true;
}

const IniSectionLine* IniScan::FindSection(std::string_view section) const
{
    for (const IniSectionLine& s : sections)
        if (SameName(s.name, section)) return &s;
    return nullptr;
}

const IniKeyLine* IniScan::FindKey(std::string_view section, std::string_view key) const
{
    for (const IniKeyLine& k : keys)
        if (SameName(k.section, section) && SameName(k.key, key)) return &k;
    return nullptr;
}

IniScan ScanIni(std::string_view text)
{
    IniScan scan;
    if (text.substr(0, 3) == "\xEF\xBB\xBF")
    {
        scan.utf8Mark = true;
        text.remove_prefix(3);
    }
    std::string section;
    int number = 0;
    while (!text.empty())
    {
        size_t end = text.find('\n');
        std::string_view line = Trim(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        ++number;
        if (line.empty() || line.front() == ';') continue;
        if (line.front() == '[')
        {
            size_t close = line.find(']');
            section = std::string(Trim(line.substr(
                1, close == std::string_view::npos ? std::string_view::npos : close - 1)));
            scan.sections.push_back({section, number});
            continue;
        }
        IniKeyLine key;
        key.section = section;
        key.line = number;
        size_t equals = line.find('=');
        key.hasEquals = equals != std::string_view::npos;
        key.key = std::string(Trim(line.substr(0, equals)));
        if (key.hasEquals) key.value = std::string(Trim(line.substr(equals + 1)));
        scan.keys.push_back(std::move(key));
    }
    return scan;
}
