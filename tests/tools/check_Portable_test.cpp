// The checker's portable readers and rules: the scan of setup.ini's lines, the wave
// files' layout, and the texts a product shows.
#include "check_IniScan.h"
#include "check_Sounds.h"
#include "check_Texts.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace
{
std::string Le(uint32_t v, int n)
{
    return std::string(reinterpret_cast<const char*>(&v), size_t(n));
}

// RIFF WAVE with a format chunk and a data chunk of 'have' bytes that claims 'claim'.
std::string Wave(uint16_t tag, uint16_t channels, uint16_t bits, uint16_t block, uint32_t claim,
                 uint32_t have, uint32_t rate = 22050)
{
    std::string fmt = Le(tag, 2) + Le(channels, 2) + Le(rate, 4) + Le(rate * block, 4) +
                      Le(block, 2) + Le(bits, 2);
    std::string body = "WAVE" + std::string("fmt ") + Le(16, 4) + fmt + "data" + Le(claim, 4) +
                       std::string(have, '\x80');
    return "RIFF" + Le(uint32_t(body.size()), 4) + body;
}

std::string Problem(const std::string& bytes)
{
    return WaveProblem(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size());
}
} // namespace

TEST(CheckIniScan, LinesSectionsAndKeysAsTheProfileReaderSeesThem)
{
    IniScan scan = ScanIni("\xEF\xBB\xBF; comment\r\n[ Files ]\r\n Launcher = A B \r\n"
                           "NoEquals\r\n\r\n[startup]\nDisks=\n=x\n[Open");
    EXPECT_TRUE(scan.utf8Mark);
    ASSERT_EQ(scan.sections.size(), 3u);
    EXPECT_EQ(scan.sections[0].name, "Files");
    EXPECT_EQ(scan.sections[0].line, 2);
    EXPECT_EQ(scan.sections[2].name, "Open"); // no closing bracket: the rest of the line
    ASSERT_EQ(scan.keys.size(), 4u);
    const IniKeyLine* launcher = scan.FindKey("FILES", "launcher");
    ASSERT_NE(launcher, nullptr);
    EXPECT_EQ(launcher->value, "A B");
    EXPECT_EQ(launcher->line, 3);
    EXPECT_FALSE(scan.keys[1].hasEquals);
    EXPECT_EQ(scan.keys[1].key, "NoEquals");
    const IniKeyLine* disks = scan.FindKey("Startup", "Disks");
    ASSERT_NE(disks, nullptr);
    EXPECT_EQ(disks->line, 7);
    EXPECT_EQ(disks->value, "");
    EXPECT_EQ(scan.keys[3].key, "");
    EXPECT_EQ(scan.FindSection("open")->line, 9);
    EXPECT_EQ(scan.FindKey("Files", "Disks"), nullptr);
}

TEST(CheckWave, WhatKeepsAWaveFromPlaying)
{
    struct Case
    {
        const char* name;
        std::string bytes;
        std::string problem;
    } cases[] = {
        {"16-bit stereo", Wave(1, 2, 16, 4, 400, 400), ""},
        {"8-bit mono, odd data padded", Wave(1, 1, 8, 1, 3, 4), ""},
        {"float", Wave(3, 1, 32, 4, 40, 40), ""},
        {"empty file", "", "is not a RIFF WAVE file"},
        {"RIFF of another kind", "RIFF" + Le(4, 4) + "AVI ", "is not a RIFF WAVE file"},
        {"no format", "RIFF" + Le(12, 4) + "WAVEdata" + Le(0, 4), "has no \"fmt \" chunk"},
        {"short format", "RIFF" + Le(14, 4) + "WAVEfmt " + Le(2, 4) + Le(1, 2),
         "has a \"fmt \" chunk of 2 bytes"},
        {"format cut by the file's end", Wave(1, 1, 16, 2, 0, 0).substr(0, 30),
         "has a \"fmt \" chunk of 10 bytes"},
        {"ADPCM", Wave(2, 1, 4, 256, 256, 256), "is not PCM (format tag 0x0002)"},
        {"no channels", Wave(1, 0, 16, 2, 4, 4),
         "has a broken format (0 channels, 22050 Hz, 16 bits, blocks of 2 bytes)"},
        {"wrong block size", Wave(1, 2, 16, 2, 4, 4),
         "has a broken format (2 channels, 22050 Hz, 16 bits, blocks of 2 bytes)"},
        {"no rate", Wave(1, 1, 16, 2, 4, 4, 0),
         "has a broken format (1 channels, 0 Hz, 16 bits, blocks of 2 bytes)"},
        {"data longer than the file", Wave(1, 1, 16, 2, 100000, 1000),
         "has a \"data\" chunk of 100000 bytes, but only 1000 follow"},
        {"data of 4 GiB", Wave(1, 1, 16, 2, 0xFFFFFFFF, 2),
         "has a \"data\" chunk of 4294967295 bytes, but only 2 follow"},
        {"no samples", Wave(1, 1, 16, 2, 0, 0), "holds no sound (its \"data\" chunk is empty)"},
        {"less than one sample", Wave(1, 2, 16, 4, 2, 2),
         "holds no sound (its \"data\" chunk is empty)"},
        {"no data chunk", Wave(1, 1, 16, 2, 0, 0).substr(0, 36), "has no \"data\" chunk"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Problem(c.bytes), c.problem) << c.name;
}

TEST(CheckTexts, TheTextsThisProductShowsAndTheirReferences)
{
    std::map<uint16_t, std::string> texts = {
        {0xFF00, "Tarn"},        {0xFFF0, "INT"},     {0xFF04, "DEFAULT_CHARSET"},
        {0xFF05, "Welcome"},     {0x1000, "Install"}, {0x1001, "Check"},
        {0x1002, "Help"},        {0x1003, "Options"}, {0x1004, "Exit"},
        {0x1006, "Web"},         {0x1007, "Remove"},  {0x1009, "Back"},
        {0x1014, "Read"},        {0x1015, "Guide"},   {0x1016, "Licence"},
        {0xF007, "Play"},        {0xF005, "Online"},  {0x5007, "Failed"},
        {0x5012, "Get DirectX"}, {0x5013, "Sound"},   {0x7012, "Sure?"},
        {0x7884, "No display"},
    };
    auto check = [&](const ProductFacts& facts)
    {
        CheckReport report;
        CheckTexts(
            [&](uint16_t n)
            {
                auto it = texts.find(n);
                return it == texts.end() ? nullptr : it->second.c_str();
            },
            facts, "VokSetup.dll", report);
        return report.Lines();
    };
    using Lines = std::vector<std::string>;
    EXPECT_EQ(check({}), Lines{});

    // Texts that only some products show.
    ProductFacts demo;
    demo.demo = true;
    texts.erase(0xF005);
    EXPECT_EQ(check(demo), Lines{"VokSetup.dll: text 0x5014 is empty; the demo's message that "
                                 "DirectX is missing is an empty box"});
    ProductFacts retail;
    retail.retail = retail.severalDisks = retail.installDX = true;
    texts[0xF005] = "Online";
    EXPECT_EQ(check(retail),
              (Lines{"VokSetup.dll: text 0x5003 is empty; the request to insert the first disc is "
                     "an empty box",
                     "VokSetup.dll: text 0x5006 is empty; the offer to install DirectX is an empty "
                     "box",
                     "VokSetup.dll: text 0x7800 is empty; the DirectX boxes have no caption",
                     "VokSetup.dll: text 0x7882 is empty; the offer to restart after installing "
                     "DirectX is an empty box",
                     "VokSetup.dll: text 0xD047 is empty; the message that the DirectX folder is "
                     "missing is an empty box"}));

    // References read as the launcher expands them.
    struct Case
    {
        std::string text;
        std::string problem; // "" for none
    } cases[] = {
        {"$[ProductName] and $[directxurl]", ""},
        {"costs $$[Price]", ""}, // "$$" keeps the second "$", so no reference follows
        {"costs $5 [Price]", ""},
        {"ends with $", ""},
        {"$[Price]", "text 0x5007 refers to $[Price], which the launcher does not set; the "
                     "player reads \"[Undefined]\""},
        {"$[ProductName] $[Nme]", "text 0x5007 refers to $[Nme], which the launcher does not "
                                  "set; the player reads \"[Undefined]\""},
        {"open $[ProductName", "text 0x5007 has \"$[\" without \"]\"; the text is cut there"},
        {std::string(1024, 'x'), "text 0x5007 is 1024 characters long; the launcher shows the "
                                 "first 1023"},
    };
    for (const Case& c : cases)
    {
        texts[0x5007] = c.text;
        EXPECT_EQ(check({}), c.problem.empty() ? Lines{} : Lines{"VokSetup.dll: " + c.problem})
            << c.text;
    }
    texts[0x5007] = "Failed";
    texts[0xFF04] = "ShiftJIS_Charset";
    EXPECT_EQ(check({}), Lines{"VokSetup.dll: text 0xFF04 is \"ShiftJIS_Charset\", not "
                               "\"SHIFTJIS_CHARSET\" (case counts); the launcher draws with the "
                               "default character set"});
}
