// CltWidget and CltRootWidget: tree links, routing, focus, capture and hover.
#include "FrameWork/_cult/Source/clt_Widget.h"

#include "FrameWork/_cult/Source/clt_AccessibleParts.h"
#include "FrameWork/_cult/Source/clt_Scale.h"

// ---- CltWidget ------------------------------------------------------------------------

CltWidget::~CltWidget()
{
    if (m_pHost)
        m_pHost->ForgetWidget(this);
    else
        TakeFocus(false);
    DestroyChildren();
}

void CltWidget::DestroyChildren()
{
    while (m_pFirstChild)
        RemoveChild(m_pFirstChild);
}

void CltWidget::OnFocus(bool) {}

bool CltWidget::HitTest(const CltPoint& p)
{
    return m_Rect.Contains(p.x, p.y);
}

void CltWidget::Invalidate(const CltRect& r)
{
    if (!m_pHost || m_pHost == this) return;
    if (m_Rect.Intersect(r).IsEmpty()) return;
    m_pHost->Invalidate(r);
}

CltWidget* CltWidget::SetCapture(CltWidget* w)
{
    return m_pHost ? m_pHost->SetCapture(w ? w : this) : nullptr;
}

CltWidget* CltWidget::GetCapture()
{
    return m_pHost ? m_pHost->GetCapture() : nullptr;
}

void CltWidget::ReleaseCapture() {}
bool CltWidget::OnNotify(uint32_t, CltWidget*)
{
    return false;
}
void CltWidget::OnLButtonUp(uint32_t, int32_t, int32_t) {}
void CltWidget::OnLButtonDblClk(uint32_t, int32_t, int32_t) {}
void CltWidget::OnLButtonDown(uint32_t, int32_t, int32_t) {}
void CltWidget::OnMouseMove(uint32_t, int32_t, int32_t) {}
void CltWidget::OnMouseEnter() {}
void CltWidget::OnMouseLeave() {}
void CltWidget::OnPointerInWindow(bool, int32_t, int32_t) {}
void CltWidget::OnInitialFocus() {}
void CltWidget::Paint(CltCanvas&, const CltRect&) {}
void CltWidget::OnTick() {}
void CltWidget::Activate() {}

int32_t CltWidget::Scaled(int32_t v) const
{
    return m_pHost ? clt_Scale(v, m_pHost->Dpi()) : v;
}

int32_t CltWidget::Unscaled(int32_t v) const
{
    return m_pHost ? v * kCltDesignDpi / m_pHost->Dpi() : v;
}

CltAccessibleInfo CltWidget::Describe() const
{
    return {};
}

CltWidget* CltWidget::Create(CltWidget* parent, const CltRect& r, uint32_t flags, uint32_t id)
{
    m_pParent = parent;
    m_Rect = r;
    m_dwFlags = flags;
    m_dwId = id;
    if (parent)
    {
        if (m_pHost) return nullptr; // attached already
        m_pHost = parent->m_pHost;
        if (!m_pHost) return nullptr; // the parent is not in a tree
    }
    else if (!m_pHost)
        return nullptr; // only a root may stand without a parent
    Invalidate(m_Rect);
    return this;
}

CltWidget* CltWidget::CreateChild(CltWidgetFactory& factory, const CltRect& r, uint32_t flags,
                                  uint32_t id)
{
    CltWidget* child = factory.Create(this, r, flags, id);
    if (child) AddChild(child);
    return child;
}

bool CltWidget::AddChild(CltWidget* child)
{
    if (!child) return false;
    child->m_pParent = this;
    child->m_pNext = nullptr;
    child->m_pPrevious = m_pLastChild;
    if (m_pLastChild)
        m_pLastChild->m_pNext = child;
    else
        m_pFirstChild = child;
    m_pLastChild = child;
    child->Invalidate(child->m_Rect);
    return true;
}

bool CltWidget::RemoveChild(CltWidget* child)
{
    if (!child || child->m_pParent != this) return false;
    if (child->m_pPrevious)
        child->m_pPrevious->m_pNext = child->m_pNext;
    else
        m_pFirstChild = child->m_pNext;
    if (child->m_pNext)
        child->m_pNext->m_pPrevious = child->m_pPrevious;
    else
        m_pLastChild = child->m_pPrevious;
    child->m_pNext = child->m_pPrevious = nullptr;
    Invalidate(child->m_Rect);
    child->m_pParent = nullptr;
    delete child;
    return true;
}

void CltWidget::WantTicks(bool want)
{
    if (want == m_bWantsTicks || !m_pHost) return;
    m_bWantsTicks = want;
    m_pHost->CountTicker(want);
}

void CltWidget::Notify(uint32_t id, CltWidget* source)
{
    // The widget that handles the notification may destroy any part of the tree, this
    // widget included: nothing is touched after a handler returned true.
    for (CltWidget* w = this; w; w = w->m_pParent)
    {
        if (id == 0) id = w->m_dwId;
        if (!source) source = w;
        if (w->OnNotify(id, source)) return;
    }
}

void CltWidget::SetRect(const CltRect& r)
{
    Invalidate(m_Rect);
    m_Rect = r;
    Invalidate(m_Rect);
}

void CltWidget::TakeFocus(bool take)
{
    if (!m_pHost) return;
    if (take && HasFlag(CltWidgetFocusable))
        m_pHost->SetFocusWidget(this);
    else if (IsFocused())
        m_pHost->SetFocusWidget(nullptr);
}

bool CltWidget::IsFocused() const
{
    return m_pHost && m_pHost->Focus() == this;
}

CltWidget* CltWidget::HitTestTree(int32_t x, int32_t y)
{
    if (!HitTest(CltPoint{x, y})) return nullptr;
    for (CltWidget* c = m_pFirstChild; c; c = c->m_pNext)
        if (CltWidget* hit = c->HitTestTree(x, y)) return hit;
    return this;
}

void CltWidget::PaintTree(CltCanvas& canvas, const CltRect& clip)
{
    CltRect area = m_Rect.Intersect(clip);
    if (area.IsEmpty()) return;
    if (HasFlag(CltWidgetVisible)) Paint(canvas, area);
    for (CltWidget* c = m_pFirstChild; c; c = c->m_pNext)
        c->PaintTree(canvas, clip);
}

// ---- CltRootWidget --------------------------------------------------------------------

namespace
{
char s_noCaptureTag;

int32_t LowWordSigned(intptr_t l)
{
    return int16_t(uint16_t(uintptr_t(l) & 0xFFFF));
}
int32_t HighWordSigned(intptr_t l)
{
    return int16_t(uint16_t((uintptr_t(l) >> 16) & 0xFFFF));
}
} // namespace

CltWidget* CltRootWidget::NoCapture()
{
    return reinterpret_cast<CltWidget*>(&s_noCaptureTag);
}

CltRootWidget::CltRootWidget() : m_pCapture(NoCapture())
{
    m_pHost = this;
}

CltRootWidget::~CltRootWidget()
{
    // The children tell this root that they go while it is still whole; the base
    // destructor then finds no host to tell.
    DestroyChildren();
    m_pFocus = m_pHover = nullptr;
    m_pCapture = NoCapture();
    m_pHost = nullptr;
}

CltWidget* CltRootWidget::SetCapture(CltWidget* w)
{
    CltWidget* previous = m_pCapture;
    m_pCapture = w ? w : this;
    return previous;
}

CltWidget* CltRootWidget::GetCapture()
{
    return m_pCapture;
}

void CltRootWidget::ReleaseCapture()
{
    m_pCapture = NoCapture();
    m_pHover = nullptr; // the next move announces the widget under the pointer again
}

void CltRootWidget::SetFocusWidget(CltWidget* w)
{
    if (m_pFocus) m_pFocus->OnFocus(false);
    if (!w)
    {
        m_pFocus = nullptr;
        m_dwFocusId = 0;
        return;
    }
    m_pFocus = w;
    m_dwFocusId = w->Id();
    w->OnFocus(true);
    AnnounceFocus(w);
}

void CltRootWidget::FocusNext()
{
    FocusStep(true);
}

void CltRootWidget::FocusPrevious()
{
    FocusStep(false);
}

// Walks the focused widget's siblings in one direction, wrapping at the ends, to the first
// focusable one; no change when the walk comes back to the focused widget.
void CltRootWidget::FocusStep(bool forward)
{
    if (!m_pFocus) return;
    CltWidget* w = m_pFocus;
    for (;;)
    {
        CltWidget* parent = w->Parent();
        CltWidget* sibling = forward ? w->NextSibling() : w->PreviousSibling();
        CltWidget* wrapped = parent ? (forward ? parent->FirstChild() : parent->LastChild()) : w;
        w = sibling ? sibling : wrapped;
        if (w == m_pFocus) return;
        if (w->HasFlag(CltWidgetFocusable)) break;
    }
    SetFocusWidget(w);
}

void CltRootWidget::ActivateFocus()
{
    if (m_pFocus) m_pFocus->Activate();
}

void CltRootWidget::ForgetWidget(CltWidget* w)
{
    w->WantTicks(false);
    w->TakeFocus(false);
    if (m_pHover == w) m_pHover = nullptr;
    if (m_pCapture == w) ReleaseCapture();
}

CltWidget* CltRootWidget::Target(int32_t x, int32_t y)
{
    return HasCapture() ? m_pCapture : HitTestTree(x, y);
}

int CltRootWidget::HandleMessage(uint32_t message, uintptr_t wParam, intptr_t lParam)
{
    int32_t x = LowWordSigned(lParam), y = HighWordSigned(lParam);
    uint32_t flags = uint32_t(wParam);
    switch (message)
    {
    case CltMsgMouseMove:
        if (!m_bLeaveAsked) m_bLeaveAsked = AskSystemPointerLeave();
        TellPointer(this, true, x, y);
        TrackPointer(wParam, x, y);
        return 1;
    case CltMsgMouseLeave:
        m_bLeaveAsked = false;
        TellPointer(this, false, -1, -1);
        return 1;
    case CltMsgLButtonDown:
    {
        CaptureSystemPointerToFocusWindow();
        CltWidget* target = Target(x, y);
        if (!target) return 1;
        if (target->HasFlag(CltWidgetFocusable) && target != m_pFocus) SetFocusWidget(target);
        target->OnLButtonDown(flags, x, y);
        return 1;
    }
    case CltMsgLButtonUp:
    {
        ReleaseSystemPointer();
        if (CltWidget* target = Target(x, y)) target->OnLButtonUp(flags, x, y);
        return 1;
    }
    case CltMsgLButtonDblClk:
        if (CltWidget* target = Target(x, y)) target->OnLButtonDblClk(flags, x, y);
        return 1;
    case CltMsgKeyDown: OnKeyDown(wParam); return 1;
    case CltMsgTimer: TickTree(this); return 1;
    case CltMsgActivatePart: ActivatePart(int32_t(wParam), uint32_t(lParam)); return 1;
    default: return 0;
    }
}

// The page may have changed since the request was posted: a part of another id is left alone.
void CltRootWidget::ActivatePart(int32_t number, uint32_t id)
{
    CltWidget* w = clt_AccessiblePart(this, number);
    if (w && w->Id() == id) w->Activate();
}

void CltRootWidget::OnKeyDown(uintptr_t key)
{
    switch (key)
    {
    case CltKeyTab:
        if (IsShiftDown())
            FocusPrevious();
        else
            FocusNext();
        break;
    case CltKeyReturn: ActivateFocus(); break;
    case CltKeyLeft:
    case CltKeyUp: FocusPrevious(); break;
    case CltKeyRight:
    case CltKeyDown: FocusNext(); break;
    default: break;
    }
}

void CltRootWidget::TrackPointer(uintptr_t wParam, int32_t x, int32_t y)
{
    // A move to where the pointer already was is a repeat, dropped. Where the window moved
    // with the pointer (a drag), the pointer is at the same point of the window but not of
    // the screen: that move is new.
    CltRect window;
    if (!GetWindowRect(window)) window = CltRect();
    if (x == m_nLastX && y == m_nLastY && window.left == m_nLastLeft && window.top == m_nLastTop)
        return;
    m_nLastX = x;
    m_nLastY = y;
    m_nLastLeft = window.left;
    m_nLastTop = window.top;
    CltWidget* hit = HitTestTree(x, y);
    if (HasCapture())
    {
        // While the mouse is routed, only the capturing widget hears of enter and leave.
        CltWidget* c = m_pCapture;
        c->OnMouseMove(uint32_t(wParam), x, y);
        if (hit == c && c != m_pHover)
        {
            c->OnMouseEnter();
            m_pHover = c;
        }
        else if (hit != c && c == m_pHover)
        {
            c->OnMouseLeave();
            m_pHover = hit;
        }
        else if (hit != m_pHover)
            m_pHover = hit;
        return;
    }
    if (hit != m_pHover)
    {
        if (m_pHover) m_pHover->OnMouseLeave();
        if (hit) hit->OnMouseEnter();
        m_pHover = hit;
    }
    else if (hit && hit != m_pFocus)
        hit->OnMouseEnter(); // takes the focus back from the keyboard
}

void CltRootWidget::CountTicker(bool wants)
{
    m_nTickers += wants ? 1 : -1;
    if (wants && m_nTickers == 1) StartTicks();
    if (!wants && m_nTickers == 0) StopTicks();
}

void CltRootWidget::TickTree(CltWidget* w)
{
    w->OnTick();
    for (CltWidget* c = w->FirstChild(); c; c = c->NextSibling())
        TickTree(c);
}

void CltRootWidget::TellPointer(CltWidget* w, bool inside, int32_t x, int32_t y)
{
    w->OnPointerInWindow(inside, x, y);
    for (CltWidget* c = w->FirstChild(); c; c = c->NextSibling())
        TellPointer(c, inside, x, y);
}
