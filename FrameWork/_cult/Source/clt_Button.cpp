// CltButton: the button state machine.
#include "FrameWork/_cult/Source/clt_Button.h"

void CltButton::SetState(int32_t state)
{
    m_nState = state;
    Invalidate(m_Rect);
}

void CltButton::OnFocus(bool gained)
{
    // Played on losing the focus as on gaining it; a sound still playing is not cut off.
    if (!m_strSound.empty() && m_pHost) m_pHost->PlayFocusSound(m_strSound.c_str());
    SetState(gained ? ButtonHighlighted : ButtonNormal);
}

void CltButton::OnMouseEnter()
{
    if (m_bPressed)
        SetState(ButtonPressed);
    else if (HasFlag(CltWidgetFocusable))
        TakeFocus(true); // the root calls OnFocus(true)
    else
        SetState(ButtonHighlighted);
}

void CltButton::OnMouseLeave()
{
    if (HasFlag(CltWidgetFocusable))
    {
        // Not pressed: the button keeps its look while it keeps the focus.
        if (m_bPressed) SetState(IsFocused() ? ButtonHighlighted : ButtonNormal);
    }
    else
        SetState(m_bPressed ? ButtonHighlighted : ButtonNormal);
}

void CltButton::OnLButtonDown(uint32_t, int32_t x, int32_t y)
{
    m_bPressed = true;
    SetState(ButtonPressed);
    if (m_pHost) m_pHost->SetCapture(this);
    if (!m_bHotArea) return;
    if (m_bHot) SetLook(ButtonPressed);
    OnPointerInWindow(true, x, y);
}

void CltButton::OnPointerInWindow(bool inside, int32_t x, int32_t y)
{
    if (!m_bHotArea) return;
    bool hot = inside && m_HotArea.Contains(Unscaled(x), Unscaled(y));
    if (!hot)
        SetLook(ButtonNormal);
    else if (!m_bHot)
        SetLook(ButtonHighlighted);
    m_bHot = hot;
}

void CltButton::SetHotArea(const CltRect& designArea)
{
    m_bHotArea = true;
    m_HotArea = designArea;
}

void CltButton::SetLook(int32_t look)
{
    if (look == m_nLook) return;
    m_nLook = look;
    Invalidate(m_Rect);
}

void CltButton::OnLButtonUp(uint32_t, int32_t x, int32_t y)
{
    // Only the button that saw the press is clicked. The second release of a double-click
    // whose first click changed the page lands on a button of the new page, which saw no
    // press (the second press arrives as a double-click message, not as a press).
    if (!m_bPressed) return;
    m_bPressed = false;
    bool inside = HitTest(CltPoint{x, y});
    SetState(inside || HasFlag(CltWidgetFocusable) ? ButtonHighlighted : ButtonNormal);
    if (m_pHost) m_pHost->ReleaseCapture();
    if (inside) Notify(m_dwId, this);
}

void CltButton::Activate()
{
    Notify(m_dwId, this);
}

void CltButton::SetName(const char* name, uint32_t codePage)
{
    m_strName = name;
    m_nCodePage = codePage;
}

CltAccessibleInfo CltButton::Describe() const
{
    return {m_strName.c_str(), m_nCodePage, m_nState == ButtonPressed};
}
