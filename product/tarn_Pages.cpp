// The product pages: names, variants, button lists, the buttons each page leaves out, and
// what every button does. Every text is a number of the setup library's string table.
#include "product/tarn_Pages.h"

#include "product/tarn_Launch.h"
#include "product/tarn_Launcher.h"

#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_lfx/Source/lfx_System.h"

#include <windows.h>

namespace
{
const uint32_t kInstallButtons[] = {0x1000, 0x1002, 0x1003, 0x1004, 0};
const uint32_t kLaunchButtons[] = {0xF007, 0xF005, 0x1002, 0x1003, 0x1004, 0};
const uint32_t kHelpButtons[] = {0x1001, 0x1014, 0x1015, 0x1009, 0};
const uint32_t kOptionsButtons[] = {0x1006, 0x1016, 0x1007, 0x1009, 0};

void Title(LfxPage& page, uint16_t number)
{
    static_cast<CTarnLauncher*>(page.m_pLauncher)
        ->SetTitle(page.m_pMain->GetSetupString(number).c_str());
}

void Click(LfxMain* main)
{
    main->PlaySoundByName("CLICK", false);
}
void ClickWait(LfxMain* main)
{
    main->PlaySoundByName("CLICK", true);
}
void BackWait(LfxMain* main)
{
    main->PlaySoundByName("BACK", true);
}
} // namespace

CTarnInstallPage::CTarnInstallPage()
{
    g_LfxMain.RegisterPage(this);
}
void CTarnInstallPage::ShowTitle()
{
    Title(*this, 0x1000);
}
const uint32_t* CTarnInstallPage::GetButtonList()
{
    return kInstallButtons;
}
void CTarnInstallPage::OnCommand(uint32_t command)
{
    switch (command & 0xFFFF)
    {
    case 1:
        ClickWait(m_pMain);
        if (m_pMain->RunInstaller()) m_pMain->GoBack();
        break;
    case 2: Click(m_pMain), m_pMain->ShowPage("HELP"); break;
    case 3: Click(m_pMain), m_pMain->ShowPage("OPTIONS"); break;
    case 4: BackWait(m_pMain), m_pMain->GoBack(); break;
    }
}

CTarnLaunchPage::CTarnLaunchPage()
{
    g_LfxMain.RegisterPage(this);
}
int CTarnLaunchPage::OnAttach()
{
    if (IsDemoProduct()) RemoveButton(2);
    return 1;
}
void CTarnLaunchPage::ShowTitle()
{
    Title(*this, 0xFF05);
}
const uint32_t* CTarnLaunchPage::GetButtonList()
{
    return kLaunchButtons;
}
void CTarnLaunchPage::OnCommand(uint32_t command)
{
    switch (command & 0xFFFF)
    {
    case 1: Play(); break;
    case 2:
        m_pMain->PlaySoundByName("START", true);
        if (LaunchSecondProgram(m_pMain)) m_pMain->GoBack();
        break;
    case 3: Click(m_pMain), m_pMain->ShowPage("HELP"); break;
    case 4: Click(m_pMain), m_pMain->ShowPage("OPTIONS"); break;
    case 5: BackWait(m_pMain), m_pMain->GoBack(); break;
    }
}

// The demo checks its DirectX through the setup library before anything else.
void CTarnLaunchPage::Play()
{
    if (IsDemoProduct() && !CheckDirectXViaSetup())
    {
        ShowProductMessage(m_pMain, nullptr, 0x5014, 0xFF00, MB_OK);
        return;
    }
    m_pMain->PlaySoundByName("START", true);
    if (m_pMain->LaunchProduct(0, false)) m_pMain->GoBack();
}

CTarnLaunchPageInt::CTarnLaunchPageInt() : CTarnLaunchPage(NoRegistration{})
{
    g_LfxMain.RegisterPage(this);
}

CTarnHelpPage::CTarnHelpPage()
{
    g_LfxMain.RegisterPage(this);
}
void CTarnHelpPage::ShowTitle()
{
    Title(*this, 0x1002);
}
const uint32_t* CTarnHelpPage::GetButtonList()
{
    return kHelpButtons;
}
void CTarnHelpPage::OnCommand(uint32_t command)
{
    HWND window = static_cast<CTarnLauncher*>(m_pLauncher)->Handle();
    switch (command & 0xFFFF)
    {
    case 1:
        // The window steps aside while the system check runs.
        ClickWait(m_pMain);
        ShowWindow(window, SW_HIDE);
        m_pMain->RunSysCheck();
        ShowWindow(window, SW_SHOW);
        break;
    case 2: ClickWait(m_pMain), m_pMain->OpenDocument("README"); break;
    case 3: ClickWait(m_pMain), m_pMain->OpenDocument("TSGUIDE"); break;
    case 4: BackWait(m_pMain), m_pMain->GoBack(); break;
    }
}

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
    Title(*this, 0x1003);
}
const uint32_t* CTarnOptionsPage::GetButtonList()
{
    return kOptionsButtons;
}
void CTarnOptionsPage::OnCommand(uint32_t command)
{
    switch (command & 0xFFFF)
    {
    case 1: ClickWait(m_pMain), m_pMain->OpenUrl("HOMEPAGE"); break;
    case 2: ClickWait(m_pMain), m_pMain->OpenDocument("LICENSE"); break;
    case 3: Uninstall(); break;
    case 4: BackWait(m_pMain), m_pMain->GoBack(); break;
    }
}

// A press that arrives while the question is open does nothing.
void CTarnOptionsPage::Uninstall()
{
    if (m_bBusy) return;
    m_bBusy = 1;
    ClickWait(m_pMain);
    int answer = ShowProductMessage(m_pMain, nullptr, 0x7012, 0x1003,
                                    MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2);
    if (answer != IDNO)
    {
        m_bBusy = 0;
        m_pMain->RunUninstaller();
    }
    m_bBusy = 0;
}

// Registration order: INSTALL, LAUNCH, LAUNCH (INT), HELP, OPTIONS.
CLT_STATIC(CLT_INIT_PAGES) CTarnInstallPage g_InstallPage;
CLT_STATIC(CLT_INIT_PAGES) CTarnLaunchPage g_LaunchPage;
CLT_STATIC(CLT_INIT_PAGES) CTarnLaunchPageInt g_LaunchPageInt;
CLT_STATIC(CLT_INIT_PAGES) CTarnHelpPage g_HelpPage;
CLT_STATIC(CLT_INIT_PAGES) CTarnOptionsPage g_OptionsPage;
