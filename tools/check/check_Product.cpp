// CheckProduct: the checks in the order in which a player meets their subjects: start-up
// (the data folder, setup.ini, the setup library), the window (skin and sounds), then the
// programs the buttons start.
#include "check_Product.h"

#include "check_Files.h"
#include "check_Library.h"
#include "check_Settings.h"
#include "check_Skin.h"
#include "check_Sounds.h"

namespace
{
struct Helper
{
    const char* name;
    const char* buttons;
};
const Helper kHelpers[] = {
    {"Syscheck.exe", "the System Check button shows"},
    {"Doc.exe", "the Read Me, troubleshooting guide and licence buttons show"},
    {"Url.exe", "the web site button shows"},
};

void CheckHelpers(const ProductFolder& folder, CheckReport& report)
{
    for (const Helper& helper : kHelpers)
        if (!IsFile(CheckFileName(folder.DataDir(), helper.name)))
            report.Add(CheckFileName(folder.anchor, helper.name),
                       std::string("missing; ") + helper.buttons + " text 0x5007");
}
} // namespace

CheckReport CheckProduct(const ProductFolder& folder)
{
    CheckReport report;
    std::string dataDir = folder.DataDir();
    if (!IsFolder(dataDir))
    {
        report.Add(folder.anchor, "the data folder is missing; " +
                                      StopsAtStartUp("clt_IsDirectoryPresent(g_Env[\"DataDir\"])"));
        return report;
    }
    if (!IsFile(CheckFileName(dataDir, "setup.ini")))
        report.Add(CheckFileName(folder.anchor, "setup.ini"),
                   "missing; " + StopsAtStartUp("clt_IsFilePresent(g_Env[\"IniPath\"])"));
    else
        CheckSetupLibrary(folder, CheckSettings(folder, report), report);
    CheckSkin(dataDir, folder.anchor, report);
    CheckSounds(dataDir, folder.anchor, report);
    CheckHelpers(folder, report);
    return report;
}
