// The texts' check: the numbers this product shows, and the references inside them.
#include "check_Texts.h"
#include "FrameWork/_lfx/Source/lfx_Texts.h"

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
    {lfx_text::ProductName, When::Always, kStops},
    {lfx_text::Languages, When::Always, kStops},
    {lfx_text::CharacterSet, When::Always, kStops},
    {lfx_text::LaunchTitle, When::Always, "the LAUNCH page has no title"},
    {lfx_text::Install, When::Always,
     "the INSTALL page has no title and its Install button no label"},
    {lfx_text::SystemCheck, When::Always, "the System Check button has no label"},
    {lfx_text::Help, When::Always, "the HELP page has no title and the Help buttons no label"},
    {lfx_text::Options, When::Always,
     "the OPTIONS page has no title, the Options buttons no label and the uninstall question "
     "no caption"},
    {lfx_text::Exit, When::Always, "the Exit buttons have no label"},
    {lfx_text::WebSite, When::Always, "the web site button has no label"},
    {lfx_text::Uninstall, When::Always, "the Uninstall button has no label"},
    {lfx_text::Back, When::Always, "the Back buttons have no label"},
    {lfx_text::ReadMe, When::Always, "the Read Me button has no label"},
    {lfx_text::Troubleshooting, When::Always, "the troubleshooting guide's button has no label"},
    {lfx_text::Licence, When::Always, "the licence's button has no label"},
    {lfx_text::PlayGame, When::Always, "the Play button has no label"},
    {lfx_text::PlaySecond, When::NotDemo, "the second program's button has no label"},
    {lfx_text::InsertDisc, When::OneDisk, "the request to insert the disc is an empty box"},
    {lfx_text::InsertFirstDisc, When::SeveralDisks,
     "the request to insert the first disc is an empty box"},
    {lfx_text::OfferDirectX, When::InstallDX, "the offer to install DirectX is an empty box"},
    {lfx_text::CannotStart, When::Always,
     "the box saying that a program could not be started is empty"},
    {lfx_text::LowMemory, When::MemoryTest, "the warning about too little memory is an empty box"},
    {lfx_text::LowPaging, When::PagingTest,
     "the warning about too little paging space is an empty box"},
    {lfx_text::NoDirectX, When::NoInstallDX, "the message that DirectX is missing is an empty box"},
    {lfx_text::NoSound, When::Always, "the question about a missing sound device is an empty box"},
    {lfx_text::DemoNoDirectX, When::Demo,
     "the demo's message that DirectX is missing is an empty box"},
    {lfx_text::UninstallQuestion, When::Always, "the uninstall question is an empty box"},
    {lfx_text::DirectXCaption, When::InstallDX, "the DirectX boxes have no caption"},
    {lfx_text::RestartQuestion, When::InstallDX,
     "the offer to restart after installing DirectX is an empty box"},
    {lfx_text::NoDisplay, When::Always,
     "the message that no display device was found is an empty box"},
    {lfx_text::NoDirectXFolder, When::InstallDX,
     "the message that the DirectX folder is missing is an empty box"},
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
        if (use.number == lfx_text::CharacterSet && strcmp(text, "SHIFTJIS_CHARSET") != 0 &&
            SameName(text, "SHIFTJIS_CHARSET"))
            report.Add(shown, Number(use.number) + " is \"" + text +
                                  "\", not \"SHIFTJIS_CHARSET\" (case counts); the launcher "
                                  "draws with the default character set");
    }
}
