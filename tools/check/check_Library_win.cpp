// The setup library's check, through LoadLibrary and the library's own exports.
#include "check_Library.h"

#include "check_Files.h"

#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include <windows.h>

namespace
{

std::string LoadError(DWORD error)
{
    std::string text = "cannot be loaded (error " + std::to_string(error);
    if (error == ERROR_BAD_EXE_FORMAT) text += ": not a Windows library for this processor";
    return text + ")";
}
} // namespace

void CheckSetupLibrary(const ProductFolder& folder, const SettingsFacts& facts, CheckReport& report)
{
    if (facts.setupDll.empty()) return; // setup.ini's check has said so
    std::string path = CheckFileName(folder.DataDir(), facts.setupDll);
    std::string shown = CheckFileName(folder.anchor, facts.setupDll);
    if (!IsFile(path)) return report.Add(shown, "missing; " + StopsAtStartUp("m_hSetupDll!=0"));
    HMODULE library = LoadLibraryA(path.c_str());
    if (!library)
        return report.Add(shown,
                          LoadError(GetLastError()) + "; " + StopsAtStartUp("m_hSetupDll!=0"));
    auto getSetup = reinterpret_cast<PFN_VokSetup_GetSetup>(
        reinterpret_cast<void*>(GetProcAddress(library, "VokSetup_GetSetup")));
    CVokSetup* setup = nullptr;
    if (!getSetup)
        report.Add(shown,
                   "has no export VokSetup_GetSetup; " + StopsAtStartUp("VokSetup_GetSetup!=0"));
    else if (!getSetup(folder.DataDir().c_str(), &setup) || !setup)
        report.Add(shown, "VokSetup_GetSetup gives no setup object; " +
                              StopsAtStartUp("VokSetup_GetSetup(g_Env[\"DataDir\"],&m_pVokSetup)"));
    if (!GetProcAddress(library, "VokSetup_HardwareSetup"))
        report.Add(shown, "has no export VokSetup_HardwareSetup; no display device is listed, "
                          "so Play shows text 0x7884 and starts nothing");
    if (facts.product.demo && !GetProcAddress(library, "VokSetup_CheckDirectX"))
        report.Add(shown, "has no export VokSetup_CheckDirectX; the demo's Play button shows "
                          "text 0x5014 and starts nothing");
    if (setup)
    {
        CheckTexts([setup](uint16_t number) { return setup->GetString(number); }, facts.product,
                   shown, report);
        setup->Release();
    }
    FreeLibrary(library);
}
