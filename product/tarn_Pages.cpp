// The product pages: names, variants, button lists and the buttons each page leaves out.
// Titles and commands act on the main window, which comes with the window layer.
#include "product/tarn_Pages.h"

#include "product/tarn_Launch.h"

#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "FrameWork/_lfx/Source/lfx_DisplayProbe.h"
#include "FrameWork/_lfx/Source/lfx_Path.h"
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include <cstring>
#include <windows.h>

namespace
{
const uint32_t kInstallButtons[] = {0x1000, 0x1002, 0x1003, 0x1004, 0};
const uint32_t kLaunchButtons[] = {0xF007, 0xF005, 0x1002, 0x1003, 0x1004, 0};
const uint32_t kHelpButtons[] = {0x1001, 0x1014, 0x1015, 0x1009, 0};
const uint32_t kOptionsButtons[] = {0x1006, 0x1016, 0x1007, 0x1009, 0};
} // namespace

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
