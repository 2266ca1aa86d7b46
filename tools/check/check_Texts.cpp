// The texts' check: the numbers this product shows, and the references inside them.
#include "check_Texts.h"

#include "check_IniScan.h"

#include <cstdio>
#include <cstring>

namespace
{
// The launcher expands a text into 1023 characters at most.
constexpr size_t kMostTextLength = 1023;

enum class When
{
    Always,
    Demo,
    NotDemo,
    OneDisk,      // retail, one disc
    SeveralDisks, // retail, more than one
    InstallDX,
    NoInstallDX,
    MemoryTest,
    PagingTest
};

struct TextUse
{
    uint16_t number;
    When when;
    const char* empty; // what a player sees when the text is empty
};

const char kStops[] = "the launcher stops at start-up (assertion !strSecond.empty())";

const TextUse kTexts[] = {
    {0xFF00, When::Always, kStops},
    {0xFFF0, When::Always, kStops},
    {0xFF04, When::Always, kStops},
    {0xFF05, When::Always, "the LAUNCH page has no title"},
    {0x1000, When::Always, "the INSTALL page has no title and its Install button no label"},
    {0x1001, When::Always, "the System Check button has no label"},
    {0x1002, When::Always, "the HELP page has no title and the Help buttons no label"},
    {0x1003, When::Always,
     "the OPTIONS page has no title, the Options buttons no label and the uninstall question "
     "no caption"},
    {0x1004, When::Always, "the Exit buttons have no label"},
    {0x1006, When::Always, "the web site button has no label"},
    {0x1007, When::Always, "the Uninstall button has no label"},
    {0x1009, When::Always, "the Back buttons have no label"},
    {0x1014, When::Always, "the Read Me button has no label"},
    {0x1015, When::Always, "the troubleshooting guide's button has no label"},
    {0x1016, When::Always, "the licence's button has no label"},
    {0xF007, When::Always, "the Play button has no label"},
    {0xF005, When::NotDemo, "the second program's button has no label"},
    {0x5002, When::OneDisk, "the request to insert the disc is an empty box"},
    {0x5003, When::SeveralDisks, "the request to insert the first disc is an empty box"},
    {0x5006, When::InstallDX, "the offer to install DirectX is an empty box"},
    {0x5007, When::Always, "the box saying that a program could not be started is empty"},
    {0x5008, When::MemoryTest, "the warning about too little memory is an empty box"},
    {0x5009, When::PagingTest, "the warning about too little paging space is an empty box"},
    {0x5012, When::NoInstallDX, "the message that DirectX is missing is an empty box"},
    {0x5013, When::Always, "the question about a missing sound device is an empty box"},
    {0x5014, When::Demo, "the demo's message that DirectX is missing is an empty box"},
    {0x7012, When::Always, "the uninstall question is an empty box"},
    {0x7800, When::InstallDX, "the DirectX boxes have no caption"},
    {0x7882, When::InstallDX, "the offer to restart after installing DirectX is an empty box"},
    {0x7884, When::Always, "the message that no display device was found is an empty box"},
    {0xD047, When::InstallDX, "the message that the DirectX folder is missing is an empty box"},
};

// The values the launcher sets (command-line switches may add others).
const char* const kValueNames[] = {
    "LauncherDir",  "Anchor",         "DataDir",    "IniPath",     "RegistryFolder", "InstallDir",
    "LauncherName", "DirectXVersion", "DirectXUrl", "ProductName", "MediaName",      "Language",
    "CharacterSet", "ProductDir",     "ProductExe", "SourceDir",   "ModuleFileName"};

bool Shown(When when, const ProductFacts& f)
{
    switch (when)
    {
    case When::Always: return true;
    case When::Demo: return f.demo;
    case When::NotDemo: return !f.demo;
    case When::OneDisk: return f.retail && !f.severalDisks;
    case When::SeveralDisks: return f.retail && f.severalDisks;
    case When::InstallDX: return f.installDX;
    case When::NoInstallDX: return !f.installDX;
    case When::MemoryTest: return f.memoryTest;
    case When::PagingTest: return f.pagingTest;
    }
    return true;
}

bool KnownValue(const std::string& name)
{
    for (const char* known : kValueNames)
        if (SameName(name, known)) return true;
    return false;
}

std::string Number(uint16_t number)
{
    char text[16];
    snprintf(text, sizeof text, "text 0x%04X", number);
    return text;
}

// The first problem of a text's references, or "". Read as the launcher expands: "$["
// opens a name up to "]"; a "$" before any other character keeps both as they are.
std::string ReferenceProblem(const char* text)
{
    for (const char* p = text; *p; ++p)
    {
        if (*p != '$') continue;
        if (p[1] != '[')
        {
            if (p[1]) ++p;
            continue;
        }
        const char* close = strchr(p + 2, ']');
        if (!close) return "has \"$[\" without \"]\"; the text is cut there";
        std::string name(p + 2, close);
        if (!KnownValue(name))
            return "refers to $[" + name +
                   "], which the launcher does not set; the player reads \"[Undefined]\"";
        p = close;
    }
    return "";
}
} // namespace

void CheckTexts(const TextSource& source, const ProductFacts& facts, const std::string& shown,
                CheckReport& report)
{
    for (const TextUse& use : kTexts)
    {
        if (!Shown(use.when, facts)) continue;
        const char* text = source(use.number);
        if (!text || !*text)
        {
            report.Add(shown, Number(use.number) + " is empty; " + use.empty);
            continue;
        }
        if (size_t length = strlen(text); length > kMostTextLength)
            report.Add(shown, Number(use.number) + " is " + std::to_string(length) +
                                  " characters long; the launcher shows the first 1023");
        if (std::string problem = ReferenceProblem(text); !problem.empty())
            report.Add(shown, Number(use.number) + " " + problem);
        if (use.number == 0xFF04 && strcmp(text, "SHIFTJIS_CHARSET") != 0 &&
            SameName(text, "SHIFTJIS_CHARSET"))
            report.Add(shown, Number(use.number) + " is \"" + text +
                                  "\", not \"SHIFTJIS_CHARSET\" (case counts); the launcher "
                                  "draws with the default character set");
    }
}
