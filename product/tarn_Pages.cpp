// The product pages: one table of pages (name, title, buttons with their commands), what
// each command does, and the buttons a page leaves out. Every text is one of the setup
// library's, by name.
#include "product/tarn_Pages.h"

#include "product/tarn_Launch.h"
#include "product/tarn_Launcher.h"

#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/Source/lfx_Texts.h"

#include <windows.h>

struct TarnPageButton
{
    uint16_t label; // 0 ends the list
    TarnCommand command;
};

struct TarnPageRow
{
    const char* name;
    uint16_t title;
    TarnPageButton buttons[LfxButtonPage::kMaxEntries + 1];
};

namespace
{
using C = TarnCommand;
namespace t = lfx_text;

// The pages. Exit and Back are the same command: the last one, which Escape runs too.
const TarnPageRow kInstall = {"INSTALL",
                              t::Install,
                              {{t::Install, C::Install},
                               {t::Help, C::ToHelp},
                               {t::Options, C::ToOptions},
                               {t::Exit, C::Back}}};
const TarnPageRow kLaunch = {"LAUNCH",
                             t::LaunchTitle,
                             {{t::PlayGame, C::Play},
                              {t::PlaySecond, C::PlaySecond},
                              {t::Help, C::ToHelp},
                              {t::Options, C::ToOptions},
                              {t::Exit, C::Back}}};
const TarnPageRow kHelp = {"HELP",
                           t::Help,
                           {{t::SystemCheck, C::SystemCheck},
                            {t::ReadMe, C::ReadMe},
                            {t::Troubleshooting, C::Troubleshooting},
                            {t::Back, C::Back}}};
const TarnPageRow kOptions = {"OPTIONS",
                              t::Options,
                              {{t::WebSite, C::WebSite},
                               {t::Licence, C::Licence},
                               {t::Uninstall, C::Uninstall},
                               {t::Back, C::Back}}};

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

// The demo checks its DirectX through the setup library before anything else.
void Play(LfxMain* main)
{
    if (IsDemoProduct() && !CheckDirectXViaSetup())
    {
        ShowProductMessage(main, nullptr, t::DemoNoDirectX, t::ProductName, MB_OK);
        return;
    }
    main->PlaySoundByName("START", true);
    if (main->LaunchProduct(0, false)) main->GoBack();
}
} // namespace

CltString CTarnPage::GetName()
{
    return m_Row.name;
}

void CTarnPage::ShowTitle()
{
    static_cast<CTarnLauncher*>(m_pLauncher)
        ->SetTitle(m_pMain->GetSetupString(m_Row.title).c_str());
}

const uint32_t* CTarnPage::GetButtonList()
{
    for (uint32_t i = 0; i < kMaxEntries; ++i)
        m_aLabels[i] = m_Row.buttons[i].label;
    return m_aLabels;
}

void CTarnPage::OnCommand(uint32_t command)
{
    uint32_t entry = (command & 0xFFFF) - 1;
    if (entry < kMaxEntries && m_Row.buttons[entry].label) Run(m_Row.buttons[entry].command);
}

void CTarnPage::RemoveCommand(TarnCommand command)
{
    for (uint32_t i = 0; m_Row.buttons[i].label; ++i)
        if (m_Row.buttons[i].command == command) RemoveButton(i + 1);
}

void CTarnPage::Run(TarnCommand command)
{
    switch (command)
    {
    case C::Install:
        ClickWait(m_pMain);
        if (m_pMain->RunInstaller()) m_pMain->GoBack();
        break;
    case C::Play: Play(m_pMain); break;
    case C::PlaySecond:
        m_pMain->PlaySoundByName("START", true);
        if (LaunchSecondProgram(m_pMain)) m_pMain->GoBack();
        break;
    case C::SystemCheck:
    {
        // The window steps aside while the system check runs, and comes back active: shown
        // alone, Windows' foreground lock may leave it behind the window last active.
        HWND window = static_cast<CTarnLauncher*>(m_pLauncher)->Handle();
        ClickWait(m_pMain);
        ShowWindow(window, SW_HIDE);
        m_pMain->RunSysCheck();
        ShowWindow(window, SW_SHOW);
        SetForegroundWindow(window);
        break;
    }
    case C::ReadMe: ClickWait(m_pMain), m_pMain->OpenDocument("README"); break;
    case C::Troubleshooting: ClickWait(m_pMain), m_pMain->OpenDocument("TSGUIDE"); break;
    case C::WebSite: ClickWait(m_pMain), m_pMain->OpenUrl("HOMEPAGE"); break;
    case C::Licence: ClickWait(m_pMain), m_pMain->OpenDocument("LICENSE"); break;
    case C::Uninstall: break; // OPTIONS' own
    case C::ToHelp: Click(m_pMain), m_pMain->ShowPage("HELP"); break;
    case C::ToOptions: Click(m_pMain), m_pMain->ShowPage("OPTIONS"); break;
    case C::Back: BackWait(m_pMain), m_pMain->GoBack(); break;
    }
}

CTarnInstallPage::CTarnInstallPage() : CTarnPage(kInstall)
{
    g_LfxMain.RegisterPage(this);
}

CTarnLaunchPage::CTarnLaunchPage() : CTarnPage(kLaunch)
{
    g_LfxMain.RegisterPage(this);
}
CTarnLaunchPage::CTarnLaunchPage(NoRegistration) : CTarnPage(kLaunch) {}
int CTarnLaunchPage::OnAttach()
{
    if (IsDemoProduct()) RemoveCommand(C::PlaySecond);
    return 1;
}

CTarnLaunchPageInt::CTarnLaunchPageInt() : CTarnLaunchPage(NoRegistration{})
{
    g_LfxMain.RegisterPage(this);
}

CTarnHelpPage::CTarnHelpPage() : CTarnPage(kHelp)
{
    g_LfxMain.RegisterPage(this);
}

CTarnOptionsPage::CTarnOptionsPage() : CTarnPage(kOptions)
{
    g_LfxMain.RegisterPage(this);
}
int CTarnOptionsPage::OnAttach()
{
    if (m_pMain && m_pMain->m_dwState == LFX_STATE_NOT_INSTALLED) RemoveCommand(C::Uninstall);
    return 1;
}
void CTarnOptionsPage::ShowTitle()
{
    m_bBusy = 0;
    CTarnPage::ShowTitle();
}

// A press that arrives while the uninstall question is open does nothing.
void CTarnOptionsPage::Run(TarnCommand command)
{
    if (command != C::Uninstall) return CTarnPage::Run(command);
    if (m_bBusy) return;
    m_bBusy = 1;
    ClickWait(m_pMain);
    int answer = ShowProductMessage(m_pMain, nullptr, t::UninstallQuestion, t::Options,
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
