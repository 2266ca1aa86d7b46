// The product pages: names, variants, button lists and the buttons each page leaves out.
// Titles and commands act on the main window, which comes with the window layer.
#include "tarn_Pages.h"

#include "../FrameWork/_cult/Source/clt_Environment.h"
#include "../FrameWork/_cult/Source/clt_Init.h"
#include "../FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "../FrameWork/_lfx/Source/lfx_DisplayProbe.h"
#include "../FrameWork/_lfx/Source/lfx_Path.h"
#include "../FrameWork/_lfx/Source/lfx_System.h"
#include "../FrameWork/_lfx/Source/lfx_VokSetup.h"

#include <cstring>
#include <windows.h>

namespace
{
const uint32_t kInstallButtons[] = {0x1000, 0x1002, 0x1003, 0x1004, 0};
const uint32_t kLaunchButtons[] = {0xF007, 0xF005, 0x1002, 0x1003, 0x1004, 0};
const uint32_t kHelpButtons[] = {0x1001, 0x1014, 0x1015, 0x1009, 0};
const uint32_t kOptionsButtons[] = {0x1006, 0x1016, 0x1007, 0x1009, 0};
} // namespace

bool IsDemoProduct()
{
    char appType[MAX_PATH] = {};
    CltString ini = JoinPath(g_Env["DataDir"], "\\setup.ini");
    GetPrivateProfileStringA("Startup", "AppType", "", appType, MAX_PATH, ini.c_str());
    return strcmp(appType, "Demo") == 0;
}

bool CheckBeforeStart(HWND owner, LfxMain* main)
{
    CltString caption = main->GetSetupString(0xFF00);
    if (!main->CheckDirectSound() &&
        MessageBoxA(owner, main->GetSetupString(0x5013).c_str(), caption.c_str(),
                    MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDNO)
        return false;
    if (g_DisplayDevices.IsEmpty())
    {
        MessageBoxA(owner, main->GetSetupString(0x7884).c_str(), caption.c_str(),
                    MB_ICONEXCLAMATION);
        return false;
    }
    return true;
}

bool CheckDirectXViaSetup()
{
    HMODULE library = LoadLibraryA(JoinPath(g_Env["DataDir"], "\\VokSetup.dll").c_str());
    if (!library) return false;
    if (auto startup = clt_GetEntry<PFN_VokSetup_Startup>(library, "VokSetup_Startup"))
        startup(g_Env["DataDir"].c_str());
    bool ready = false;
    if (auto check = clt_GetEntry<PFN_VokSetup_CheckDirectX>(library, "VokSetup_CheckDirectX"))
        ready = check() == 1;
    if (auto shutdown = clt_GetEntry<PFN_VokSetup_Shutdown>(library, "VokSetup_Shutdown"))
        shutdown();
    FreeLibrary(library);
    return ready;
}

bool LaunchSecondProgram(LfxMain* main)
{
    SetCurrentDirectoryA(g_Env["SourceDir"].c_str());
    CDisplayProbe probe(JoinPath(g_Env["DataDir"], "\\VokSetup.dll").c_str());
    if (!CheckBeforeStart(nullptr, main)) return false;
    main->Execute("trnmp.exe", "", JoinPath(g_Env["LauncherDir"], "\\GameData").c_str(), true,
                  false);
    return true;
}

CTarnInstallPage::CTarnInstallPage()
{
    g_LfxMain.RegisterPage(this);
}
void CTarnInstallPage::ShowTitle() {}
const uint32_t* CTarnInstallPage::GetButtonList()
{
    return kInstallButtons;
}
void CTarnInstallPage::OnCommand(uint32_t) {}

CTarnLaunchPage::CTarnLaunchPage()
{
    g_LfxMain.RegisterPage(this);
}
int CTarnLaunchPage::OnAttach()
{
    if (IsDemoProduct()) RemoveButton(2);
    return 1;
}
void CTarnLaunchPage::ShowTitle() {}
const uint32_t* CTarnLaunchPage::GetButtonList()
{
    return kLaunchButtons;
}
void CTarnLaunchPage::OnCommand(uint32_t) {}

CTarnLaunchPageInt::CTarnLaunchPageInt() : CTarnLaunchPage(NoRegistration{})
{
    g_LfxMain.RegisterPage(this);
}

CTarnHelpPage::CTarnHelpPage()
{
    g_LfxMain.RegisterPage(this);
}
void CTarnHelpPage::ShowTitle() {}
const uint32_t* CTarnHelpPage::GetButtonList()
{
    return kHelpButtons;
}
void CTarnHelpPage::OnCommand(uint32_t) {}

CTarnOptionsPage::CTarnOptionsPage()
{
    g_LfxMain.RegisterPage(this);
}
int CTarnOptionsPage::OnAttach()
{
    if (m_pMain && m_pMain->m_dwState == LFX_STATE_NOT_INSTALLED) RemoveButton(3);
    return 1;
}
void CTarnOptionsPage::ShowTitle()
{
    m_bBusy = 0;
}
const uint32_t* CTarnOptionsPage::GetButtonList()
{
    return kOptionsButtons;
}
void CTarnOptionsPage::OnCommand(uint32_t) {}

// Registration order: INSTALL, LAUNCH, LAUNCH (INT), HELP, OPTIONS.
CLT_STATIC(CLT_INIT_PAGES) CTarnInstallPage g_InstallPage;
CLT_STATIC(CLT_INIT_PAGES) CTarnLaunchPage g_LaunchPage;
CLT_STATIC(CLT_INIT_PAGES) CTarnLaunchPageInt g_LaunchPageInt;
CLT_STATIC(CLT_INIT_PAGES) CTarnHelpPage g_HelpPage;
CLT_STATIC(CLT_INIT_PAGES) CTarnOptionsPage g_OptionsPage;
