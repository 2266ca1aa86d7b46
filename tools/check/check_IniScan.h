// The layout of setup.ini as written: its sections and key lines with their line numbers,
// so that a report can point at the line. The values the launcher reads come from the
// system's own profile reader (check_Ini.h); this scan only locates, and finds what that
// reader hides: repeated keys and sections, keys the launcher never asks for, lines
// without "=", a byte-order mark.
//
// Lines end at "\n" ("\r\n" too); blanks around names and values do not count; a line
// starting with ";" is a comment. Lines before the first section belong to the section "".
#pragma once

#include <string>
#include <string_view>
#include <vector>

struct IniSectionLine
{
    std::string name;
    int line = 0;
};

struct IniKeyLine
{
    std::string section, key, value;
    int line = 0;
    bool hasEquals = true;
};

struct IniScan
{
    bool utf8Mark = false; // the file starts with EF BB BF
    std::vector<IniSectionLine> sections;
    std::vector<IniKeyLine> keys;

    // The first section or key line of that name (names compared without regard to case).
    const IniSectionLine* FindSection(std::string_view section) const;
    const IniKeyLine* FindKey(std::string_view section, std::string_view key) const;
};

IniScan ScanIni(std::string_view text);

bool SameName(std::string_view a, std::string_view b);
