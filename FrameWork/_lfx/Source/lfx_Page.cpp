// Page defaults and the button page: laying out the column of buttons, the focus memory
// shared by all pages, and turning window messages into page commands.
#include "FrameWork/_lfx/Source/lfx_Page.h"

#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_TextButton.h"
#include "FrameWork/_lfx/Source/lfx_EnvNames.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Path.h"
#include "FrameWork/_lfx/Source/lfx_System.h"

CltString LfxPage::GetVariant()
{
    return CltString();
}
int LfxPage::OnAttach()
{
    return 1;
}
LfxPage::~LfxPage() = default;

LfxPageSurface* LfxButtonPage::Surface() const
{
    return m_pLauncher ? m_pLauncher->m_pSurface : nullptr;
}

CltString LfxButtonPage::Label(uint32_t text) const
{
    return m_pMain ? m_pMain->GetSetupString(uint16_t(text)) : CltString();
}

int LfxButtonPage::Show()
{
    const uint32_t* list = GetButtonList();
    LfxPageSurface* surface = Surface();
    if (!list || !surface || !surface->root || !surface->panel) return 1;
    CltString sound = JoinPath(g_Env[lfx_env::DataDir], "HOVER");
    m_nButtons = 0;
    int32_t y = kFirstY; // design coordinates, scaled for the window's DPI
    // Entries past the ninth have no command number of their own and are left out.
    for (uint32_t i = 0; i < kMaxEntries && list[i] != 0; ++i)
    {
        m_apButtons[i] = nullptr;
        if (!IsRemoved(i + 1))
        {
            auto* button = static_cast<CltTextButton*>(surface->panel->CreateChild(
                g_TextButtonFactory,
                CltRect(surface->root->Scaled(kFirstX), surface->root->Scaled(y), 0, 0),
                CltWidgetVisible | CltWidgetFocusable, kFirstId + i));
            m_apButtons[i] = button;
            if (button)
            {
                button->SetContent(surface->buttonFont, Label(list[i]).c_str(), surface->normal,
                                   surface->pressed, surface->focused);
                button->SetSound(sound.c_str());
                y += kStep;
            }
        }
        ++m_nButtons;
    }
    ShowTitle();
    // A screen reader reads the new buttons before it hears which one has the focus.
    surface->root->AnnounceNewParts();
    if (CltTextButton* focus = InitialFocus(*surface))
    {
        surface->root->SetFocusWidget(focus);
        focus->OnInitialFocus();
    }
    return 1;
}

bool LfxButtonPage::PrepareLabel(uint32_t i)
{
    const uint32_t* list = GetButtonList();
    LfxPageSurface* surface = Surface();
    if (!list || !surface || !surface->root || i >= kMaxEntries) return false;
    for (uint32_t k = 0; k <= i; ++k)
        if (list[k] == 0) return false;
    if (!IsRemoved(i + 1))
        CltTextButton::PrepareLabel(surface->buttonFont, Label(list[i]).c_str(), surface->normal,
                                    surface->root->Dpi());
    return true;
}

// The remembered entry when going back (the first entry when it is out of range), else
// the first entry. An entry without a button hands the focus to the next button after
// it, or failing that to the first button of the page.
CltTextButton* LfxButtonPage::InitialFocus(LfxPageSurface& surface) const
{
    uint32_t k = 0;
    if (surface.restoreFocus && surface.rememberedEntry >= 0 &&
        uint32_t(surface.rememberedEntry) < m_nButtons)
        k = uint32_t(surface.rememberedEntry);
    for (uint32_t i = k; i < m_nButtons; ++i)
        if (m_apButtons[i]) return m_apButtons[i];
    for (uint32_t i = 0; i < k; ++i)
        if (m_apButtons[i]) return m_apButtons[i];
    return nullptr;
}

int LfxButtonPage::Hide(bool forward)
{
    LfxPageSurface* surface = Surface();
    if (!surface || !surface->panel) return 0;
    // The focused entry is read before the buttons go: a destroyed button takes the
    // root's focus with it.
    int32_t focused = surface->root ? int32_t(surface->root->FocusId()) - int32_t(kFirstId) : -1;
    for (uint32_t i = 0; i < m_nButtons; ++i)
    {
        if (m_apButtons[i]) surface->panel->RemoveChild(m_apButtons[i]);
        m_apButtons[i] = nullptr;
    }
    surface->restoreFocus = !forward;
    if (forward) surface->rememberedEntry = focused;
    return 0;
}

LRESULT LfxButtonPage::HandleMessage(UINT message, WPARAM wParam, LPARAM)
{
    switch (message)
    {
    case WM_KEYDOWN:
        if (wParam == VK_ESCAPE) OnCommand(m_nButtons);
        return 0;
    case WM_COMMAND:
        if (Surface() && Surface()->panel) OnCommand(uint32_t(wParam - 100));
        return 1;
    default: return 1;
    }
}

void LfxButtonPage::RemoveButton(uint32_t command)
{
    uint32_t c = command & 0xFFFF;
    if (c <= kMaxEntries) m_aRemoved[c] = -1;
}
