// The product-folder checker against the demo product: the demo passes, and a copy broken
// one fault at a time gives exactly the report lines expected for that fault. The setup
// library is the real one (its test build where a text must change: its [VokSetupTest]
// Text_XXXX keys set texts); setup.ini is read by the system's own reader under Wine.
#include "check_Product.h"

#include "harness/wine_Harness.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{
using harness::ReadTextFile;
using harness::WriteTextFile;

// An uncompressed 32-bit TGA of one colour.
std::string Tga(int width, int height)
{
    std::string t(18, '\0');
    t[2] = 2;
    t[12] = char(width), t[13] = char(width >> 8), t[14] = char(height), t[15] = char(height >> 8);
    t[16] = 32, t[17] = 8;
    for (int i = 0; i < width * height; ++i)
        t += std::string("\x40\x80\xC0\xFF", 4);
    return t;
}

// An uncompressed BMP of 8 bits a pixel with a grey palette, every pixel colour 7.
std::string Bmp8(int width, int height)
{
    auto le = [](uint32_t v, int n) { return std::string(reinterpret_cast<char*>(&v), n); };
    uint32_t row = (uint32_t(width) + 3) & ~3u, offset = 14 + 40 + 1024;
    std::string bmp = "BM" + le(offset + row * height, 4) + le(0, 4) + le(offset, 4) + le(40, 4) +
                      le(width, 4) + le(height, 4) + le(1, 2) + le(8, 2) + le(0, 4) +
                      le(row * height, 4) + le(0, 4) + le(0, 4) + le(256, 4) + le(0, 4);
    for (uint32_t i = 0; i < 256; ++i)
        bmp += le(i * 0x010101u, 4);
    return bmp + std::string(size_t(row) * height, '\x07');
}

// A wave file: its format tag, and data bytes of PCM 16-bit mono at 22050 Hz.
std::string Wave(uint16_t tag, uint32_t dataBytes)
{
    auto le = [](uint32_t v, int n) { return std::string(reinterpret_cast<char*>(&v), n); };
    std::string fmt = le(tag, 2) + le(1, 2) + le(22050, 4) + le(44100, 4) + le(2, 2) + le(16, 2);
    std::string body =
        "WAVEfmt " + le(16, 4) + fmt + "data" + le(dataBytes, 4) + std::string(dataBytes, '\0');
    return "RIFF" + le(uint32_t(body.size()), 4) + body;
}

// A copy of the demo product to break.
class Product
{
  public:
    explicit Product(const std::string& name)
        : m_dir(harness::Join(harness::TestRoot(), name)), m_data(m_dir + "\\Install")
    {
        harness::RemoveTree(m_dir);
        EXPECT_TRUE(harness::CopyTree(DEMO_PRODUCT, m_dir));
    }
    const std::string& Dir() const { return m_dir; }
    std::string File(const std::string& name) const { return m_data + "\\" + name; }

    // setup.ini, line by line: a line equal to 'line' becomes 'replacement' (which may
    // hold several lines, or none).
    void Ini(const std::string& line, const std::string& replacement)
    {
        std::string text = ReadTextFile(File("setup.ini")), out;
        std::istringstream in(text);
        bool found = false;
        for (std::string l; std::getline(in, l);)
        {
            if (!l.empty() && l.back() == '\r') l.pop_back();
            if (l == line && !found)
            {
                found = true;
                if (!replacement.empty()) out += replacement + "\r\n";
            }
            else
                out += l + "\r\n";
        }
        ASSERT_TRUE(found) << line;
        WriteTextFile(File("setup.ini"), out);
    }
    void AppendIni(const std::string& text)
    {
        WriteTextFile(File("setup.ini"), ReadTextFile(File("setup.ini")) + text);
    }
    void Write(const std::string& name, const std::string& bytes)
    {
        WriteTextFile(File(name), bytes);
    }
    void Remove(const std::string& name) { ASSERT_TRUE(fs::remove(File(name))) << name; }
    void Cut(const std::string& name, size_t size) { fs::resize_file(File(name), size); }
    void Patch32(const std::string& name, size_t at, uint32_t value)
    {
        std::string bytes = ReadTextFile(File(name));
        memcpy(&bytes[at], &value, 4);
        Write(name, bytes);
    }
    void UseLibrary(const char* builtName)
    {
        ASSERT_TRUE(harness::CopyInto(harness::Join(harness::ExeFolder(), builtName), m_data,
                                      "VokSetup.dll"));
    }

    // "{TEXT}" in an expected line is the number of the first line of setup.ini that is
    // exactly TEXT; "{TEXT#2}" of the second.
    std::string Resolve(std::string expected) const
    {
        for (size_t open; (open = expected.find('{')) != std::string::npos;)
        {
            size_t close = expected.find('}', open);
            std::string wanted = expected.substr(open + 1, close - open - 1);
            int nth = 1;
            if (size_t hash = wanted.find('#'); hash != std::string::npos)
                nth = std::stoi(wanted.substr(hash + 1)), wanted.resize(hash);
            std::istringstream in(ReadTextFile(File("setup.ini")));
            int number = 0, at = 0;
            for (std::string l; std::getline(in, l);)
            {
                ++number;
                if (!l.empty() && l.back() == '\r') l.pop_back();
                if (l == wanted && --nth == 0)
                {
                    at = number;
                    break;
                }
            }
            EXPECT_NE(at, 0) << wanted;
            expected.replace(open, close - open + 1, std::to_string(at));
        }
        return expected;
    }

  private:
    std::string m_dir, m_data;
};

struct Fault
{
    const char* name;
    std::function<void(Product&)> make;
    std::vector<std::string> expected;
};

const char kStops[] = "; the launcher stops at start-up (assertion ";

std::vector<std::string> Check(const Product& p, const char* anchor = "Install")
{
    return CheckProduct({p.Dir(), anchor}).Lines();
}
} // namespace

TEST(ProductCheck, TheDemoProductHasNoProblem)
{
    EXPECT_EQ(CheckProduct({DEMO_PRODUCT, "Install"}).Lines(), std::vector<std::string>{});
}

TEST(ProductCheck, AMissingDataFolderOrSetupIniEndsTheCheckOfWhatDependsOnThem)
{
    Product p("folders");
    EXPECT_EQ(Check(p, "Data"),
              std::vector<std::string>{std::string("Data: the data folder is missing") + kStops +
                                       "clt_IsDirectoryPresent(g_Env[\"DataDir\"]))"});
    p.Remove("setup.ini");
    EXPECT_EQ(Check(p),
              std::vector<std::string>{std::string("Install\\setup.ini: missing") + kStops +
                                       "clt_IsFilePresent(g_Env[\"IniPath\"]))"});
}

TEST(ProductCheck, EachFaultGivesItsReportLines)
{
    const std::string ini = "Install\\setup.ini:";
    const std::string lib = "Install\\VokSetup.dll: ";
    const std::string noDisplay =
        lib + "has no export VokSetup_HardwareSetup; no display device is listed, so Play shows "
              "text 0x7884 and starts nothing";
    const std::string plain = "; the window is a plain rectangle";
    const std::string forms = " (the launcher reads BMP files of 24 bits and TGA files of 24 or "
                              "32 bits, uncompressed or run-length encoded, as skinbuild writes "
                              "them)";
    const std::vector<Fault> faults = {
        // setup.ini: values the launcher cannot start without.
        {"launcher name missing",
         [](Product& p) { p.Ini("Launcher=Launcher.exe", ""); },
         {ini + "{[Files]}: [Files] Launcher is missing" + kStops + "!strSecond.empty())"}},
        {"DirectX version empty",
         [](Product& p) { p.Ini("DirectXVer=7.0", "DirectXVer="); },
         {ini + "{DirectXVer=}: [Startup] DirectXVer is empty" + kStops + "!strSecond.empty())"}},
        {"game mutex missing",
         [](Product& p) { p.Ini("Product=TarnGameMutex", ""); },
         {ini + "{[Mutex]}: [Mutex] Product is missing" + kStops + "!strGameMutex.empty())"}},
        {"setup library unnamed",
         [](Product& p) { p.Ini("SetupDll=VokSetup.dll", ""); },
         {ini + "{[Files]}: [Files] SetupDll is missing" + kStops + "m_hSetupDll!=0)"}},
        {"DirectX folder key missing",
         [](Product& p)
         {
             p.Ini("InstallDX=0", "InstallDX=1");
             p.Ini("DirectXCurrent=DirectX", "");
         },
         {ini + "{[Folders]}: [Folders] DirectXCurrent is missing; installing DirectX stops the "
                "launcher (assertion GetIniString(SCT_FOLDERS,VAL_DIRECTX_CURRENT,strDirectX))"}},
        // setup.ini: values of the wrong form, and what they name.
        {"AppType in the wrong case",
         [](Product& p) { p.Ini("AppType=Retail", "AppType=demo"); },
         {ini + "{AppType=demo}: [Startup] AppType is \"demo\", neither \"Demo\" (case counts) "
                "nor \"Retail\"; the launcher treats the product as a full one without a disc "
                "check"}},
        {"disks in words",
         [](Product& p) { p.Ini("Disks=1", "Disks=two"); },
         {ini + "{Disks=two}: [Startup] Disks is \"two\", not a whole number; the launcher "
                "reads 0"}},
        {"memory of 123456",
         [](Product& p) { p.Ini("RAM=64", "RAM=123456"); },
         {ini + "{RAM=123456}: [SysCheck] RAM is 123456, which the launcher takes for a missing "
                "value"}},
        {"registry key unnamed",
         [](Product& p)
         {
             p.Ini("Company=Tarn Games", "");
             p.Ini("Product=Tarn", "");
             p.Ini("Version=1.0", "");
         },
         {ini + "{[Registry]}: [Registry] Company, Product and Version are all missing; the "
                "launcher looks for the product's registry values directly under "
                "HKEY_LOCAL_MACHINE\\Software"}},
        {"retail disc without label",
         [](Product& p) { p.Ini("Data=TARN", ""); },
         {ini + "{[Startup]}: [Startup] Data is missing; the disc check of a retail product "
                "accepts any disc"}},
        {"DirectX folder not on the disc",
         [](Product& p) { p.Ini("InstallDX=0", "InstallDX=1"); },
         {ini + "{DirectXCurrent=DirectX}: [Folders] DirectXCurrent names DirectX, which is not "
                "in the product folder; installing DirectX shows text 0xD047 instead"}},
        {"launcher under another name",
         [](Product& p) { p.Ini("Launcher=Launcher.exe", "Launcher=Launch.exe"); },
         {ini + "{Launcher=Launch.exe}: [Files] Launcher names Launch.exe, which is not in the "
                "product folder; the disc check and the hand-over to the installed launcher "
                "look for that name"}},
        {"installer missing",
         [](Product& p) { p.Remove("TarnSetup.exe"); },
         {ini + "{Installer=TarnSetup.exe}: [Files] Installer names TarnSetup.exe, which is not "
                "in Install; the Install button shows text 0x5007"}},
        {"installer unnamed",
         [](Product& p) { p.Ini("Installer=TarnSetup.exe", ""); },
         {ini + "{[Files]}: [Files] Installer is missing; the Install button opens the data "
                "folder instead of running an installer"}},
        {"game unnamed",
         [](Product& p) { p.Ini("Product=Tarn.exe", ""); },
         {ini + "{[Files]}: [Files] Product is missing; Play opens the game's folder instead of "
                "starting the game"}},
        {"setup library renamed",
         [](Product& p)
         {
             fs::rename(p.File("VokSetup.dll"), p.File("Setup.dll"));
             p.Ini("SetupDll=VokSetup.dll", "SetupDll=Setup.dll");
         },
         {ini + "{SetupDll=Setup.dll}: [Files] SetupDll names Setup.dll, but the display check "
                "always loads VokSetup.dll, which is not in Install; Play shows text 0x7884 and "
                "starts nothing"}},
        // setup.ini: what the system's reader hides.
        {"key repeated",
         [](Product& p) { p.Ini("Launcher=Launcher.exe", "Launcher=Launcher.exe\r\nLauncher=x"); },
         {ini + "{Launcher=x}: [Files] Launcher appears again (first on line "
                "{Launcher=Launcher.exe}); the launcher uses the first"}},
        {"key misspelt",
         [](Product& p) { p.Ini("DirectXVer=7.0", "DirectXVer=7.0\r\nDirectXVersion=7.0"); },
         {ini + "{DirectXVersion=7.0}: [Startup] DirectXVersion is not a key the launcher reads"}},
        {"line without equals sign",
         [](Product& p) { p.Ini("Data=TARN", "Data TARN"); },
         {ini + "{Data TARN}: \"Data TARN\" in [Startup] has no \"=\"; the launcher ignores the "
                "line",
          ini + "{[Startup]}: [Startup] Data is missing; the disc check of a retail product "
                "accepts any disc"}},
        {"section repeated",
         [](Product& p) { p.AppendIni("[Files]\r\nCmdLine=/S\r\n"); },
         {ini + "{[Files]#2}: [Files] appears again (first on line {[Files]}); write its keys "
                "under the first one",
          ini + "{CmdLine=/S}: [Files] CmdLine appears again (first on line {CmdLine=}); the "
                "launcher uses the first"}},
        {"byte-order mark",
         [](Product& p)
         { p.Write("setup.ini", "\xEF\xBB\xBF" + ReadTextFile(p.File("setup.ini"))); },
         {ini + "1: starts with a UTF-8 byte-order mark; Windows reads it as part of the first "
                "line, so [Registry] is not found"}},
        // The setup library.
        {"setup library named but absent",
         [](Product& p) { p.Ini("SetupDll=VokSetup.dll", "SetupDll=Game.dll"); },
         {std::string("Install\\Game.dll: missing") + kStops + "m_hSetupDll!=0)"}},
        {"not a library",
         [](Product& p) { p.Write("VokSetup.dll", "MZ, but no more"); },
         {lib + "cannot be loaded (error 193: not a Windows library for this processor)" +
          std::string(kStops) + "m_hSetupDll!=0)"}},
        {"library without exports",
         [](Product& p) { p.UseLibrary("NoExport.dll"); },
         {lib + "has no export VokSetup_GetSetup" + kStops + "VokSetup_GetSetup!=0)", noDisplay}},
        {"library refusing its object",
         [](Product& p) { p.UseLibrary("RefusingSetup.dll"); },
         {lib + "VokSetup_GetSetup gives no setup object" + kStops +
              "VokSetup_GetSetup(g_Env[\"DataDir\"],&m_pVokSetup))",
          noDisplay}},
        {"product name empty",
         [](Product& p)
         {
             p.UseLibrary("VokSetup.dll");
             p.AppendIni("[VokSetupTest]\r\nText_FF00=\r\n");
         },
         {lib + "text 0xFF00 is empty" + kStops + "!strSecond.empty())"}},
        {"label empty",
         [](Product& p)
         {
             p.UseLibrary("VokSetup.dll");
             p.AppendIni("[VokSetupTest]\r\nText_1004=\r\n");
         },
         {lib + "text 0x1004 is empty; the Exit buttons have no label"}},
        {"reference misspelt",
         [](Product& p)
         {
             p.UseLibrary("VokSetup.dll");
             p.AppendIni("[VokSetupTest]\r\nText_5013=No sound for $[ProductNmae].\r\n");
         },
         {lib + "text 0x5013 refers to $[ProductNmae], which the launcher does not set; the "
                "player reads \"[Undefined]\""}},
        // The skin.
        {"background unreadable",
         [](Product& p) { p.Cut("product.bmp", 1000); },
         {"Install\\product.bmp: cannot be read by the launcher's picture reader" + forms +
              "; the window is 500 x 460 in a plain dark colour",
          "Install\\product.rgn: has 6 of 78 rectangles reaching outside the 500 x 460 "
          "background, the first 73 (74, 460, 118, 461); it was made for another picture, and "
          "the window's outline does not follow this one"}},
        {"caption emptied",
         [](Product& p) { p.Cut("active.tga", 0); },
         {"Install\\active.tga: is empty; the caption bar shows the background while the "
          "window is active"}},
        {"caption too narrow",
         [](Product& p) { p.Write("inactive.tga", Tga(400, 30)); },
         {"Install\\inactive.tga: is 400 x 30; the caption bar is 500 x 30"}},
        {"title button too small",
         [](Product& p) { p.Write("ovrmin.tga", Tga(10, 10)); },
         {"Install\\ovrmin.tga: is 10 x 10, smaller than the 25 x 23 area where the pointer "
          "makes the button react"}},
        {"title button without key row",
         [](Product& p) { p.Write("close.tga", Tga(25, 1)); },
         {"Install\\close.tga: is 25 x 1; the launcher reads the key colour at (0, 1), so the "
          "close button is invisible while the pointer is elsewhere"}},
        {"title button missing",
         [](Product& p) { p.Remove("selmin.tga"); },
         {"Install\\selmin.tga: missing; the minimise button is invisible while it is held "
          "down"}},
        {"page faces of two sizes",
         [](Product& p) { p.Write("pressed.tga", Tga(270, 41)); },
         {"Install\\pressed.tga: is 270 x 41, but unselect.tga is 270 x 40; the buttons change "
          "size between looks"}},
        {"page faces too wide",
         [](Product& p)
         {
             for (const char* face : {"unselect.tga", "focused.tga", "pressed.tga"})
                 p.Write(face, Tga(320, 40));
         },
         {"Install\\unselect.tga: is 320 x 40; a page of five buttons reaches (514, 428), past "
          "the 500 x 470 background, and is cut off there"}},
        {"page face unreadable",
         [](Product& p) { p.Write("focused.tga", "not a picture"); },
         {"Install\\focused.tga: cannot be read by the launcher's picture reader" + forms +
          "; page buttons show only their labels while focused"}},
        {"background with a palette",
         [](Product& p) { p.Write("product.bmp", Bmp8(500, 470)); },
         {"Install\\product.bmp: has a palette of colours, which the launcher does not keep" +
          forms + "; the picture shows in wrong colours"}},
        {"region missing",
         [](Product& p) { p.Remove("product.rgn"); },
         {"Install\\product.rgn: missing" + std::string(plain)}},
        {"region header cut",
         [](Product& p) { p.Cut("product.rgn", 20); },
         {"Install\\product.rgn: is 20 bytes, shorter than its 32-byte header" +
          std::string(plain)}},
        {"region rectangles cut",
         [](Product& p) { p.Cut("product.rgn", 100); },
         {"Install\\product.rgn: counts 78 rectangles, but its 100 bytes hold 4" +
          std::string(plain)}},
        {"region header of 16 bytes",
         [](Product& p) { p.Patch32("product.rgn", 0, 16); },
         {"Install\\product.rgn: has a header size of 16, not 32; Windows refuses the region "
          "and the window is a plain rectangle"}},
        {"region of another type",
         [](Product& p) { p.Patch32("product.rgn", 4, 2); },
         {"Install\\product.rgn: has region type 2, not 1; Windows refuses the region and the "
          "window is a plain rectangle"}},
        {"region without rectangles",
         [](Product& p) { p.Patch32("product.rgn", 8, 0); },
         {"Install\\product.rgn: holds no rectangle; the window is invisible"}},
        {"region wider than the picture",
         [](Product& p) { p.Patch32("product.rgn", 40, 600); },
         {"Install\\product.rgn: has 1 of 78 rectangles reaching outside the 500 x 470 "
          "background, the first 1 (8, 0, 600, 1); it was made for another picture, and the "
          "window's outline does not follow this one"}},
        {"region with an empty rectangle",
         [](Product& p) { p.Patch32("product.rgn", 40, 8); },
         {"Install\\product.rgn: has an empty rectangle 1 (8, 0, 8, 1); Windows may refuse the "
          "region, and then the window is a plain rectangle"}},
        // The sounds.
        {"sound missing",
         [](Product& p) { p.Remove("CLICK.wav"); },
         {"Install\\CLICK.wav: missing; a page button's click plays Windows' default sound "
          "instead"}},
        {"sound not a wave",
         [](Product& p) { p.Write("START.wav", "ID3 and an MP3"); },
         {"Install\\START.wav: is not a RIFF WAVE file; starting the game plays Windows' "
          "default sound instead"}},
        {"sound compressed",
         [](Product& p) { p.Write("OPEN.wav", Wave(2, 400)); },
         {"Install\\OPEN.wav: is not PCM (format tag 0x0002); the opening window plays "
          "Windows' default sound instead"}},
        {"sound of no samples",
         [](Product& p) { p.Write("HOVER.wav", Wave(1, 0)); },
         {"Install\\HOVER.wav: holds no sound (its \"data\" chunk is empty); a page button "
          "taking the focus is silent"}},
        // The programs the buttons start.
        {"system check missing",
         [](Product& p) { p.Remove("Syscheck.exe"); },
         {"Install\\Syscheck.exe: missing; the System Check button shows text 0x5007"}},
        {"document opener missing",
         [](Product& p) { p.Remove("Doc.exe"); },
         {"Install\\Doc.exe: missing; the Read Me, troubleshooting guide and licence buttons "
          "show text 0x5007"}},
    };
    for (const Fault& fault : faults)
    {
        SCOPED_TRACE(fault.name);
        Product p("fault");
        fault.make(p);
        std::vector<std::string> expected;
        for (const std::string& line : fault.expected)
            expected.push_back(p.Resolve(line));
        EXPECT_EQ(Check(p), expected);
    }
}
