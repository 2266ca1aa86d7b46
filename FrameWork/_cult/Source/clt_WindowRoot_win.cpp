// CltWindowRoot: the widget tree's window.
#include "FrameWork/_cult/Source/clt_WindowRoot.h"

#include "FrameWork/_cult/Source/clt_Accessible.h"
#include "FrameWork/_cult/Source/clt_AccessibleParts.h"
#include "FrameWork/_cult/Source/clt_SystemEntries.h"

#include <mmsystem.h>

// A reader may hold the accessible object longer than the tree lives.
CltWindowRoot::~CltWindowRoot()
{
    if (!m_pAccessible) return;
    m_pAccessible->Disconnect();
    m_pAccessible->Release();
}

void CltWindowRoot::Invalidate(const CltRect& r)
{
    if (m_hWnd) m_rcRepaint = m_rcRepaint.Union(r);
}

void CltWindowRoot::ApplyRepaints()
{
    if (!m_hWnd || m_rcRepaint.CoversNothing()) return;
    RECT rc = {m_rcRepaint.left, m_rcRepaint.top, m_rcRepaint.right, m_rcRepaint.bottom};
    m_rcRepaint = CltRect();
    InvalidateRect(m_hWnd, &rc, FALSE);
}

// A command may open a box, whose own message loop paints the window: what changed before
// it is passed on first.
bool CltWindowRoot::OnNotify(uint32_t id, CltWidget* source)
{
    ApplyRepaints();
    if (id != 0 && m_hWnd)
        SendMessageA(m_hWnd, WM_COMMAND, WPARAM(id), reinterpret_cast<LPARAM>(source));
    return true;
}

void CltWindowRoot::Attach(HWND window)
{
    m_hWnd = window;
    if (Tickers() > 0) StartTicks();
}

void CltWindowRoot::StartTicks()
{
    if (m_hWnd) SetTimer(m_hWnd, 1, 50, nullptr);
}

void CltWindowRoot::StopTicks()
{
    if (m_hWnd) KillTimer(m_hWnd, 1);
}

void CltWindowRoot::CaptureSystemPointerToFocusWindow()
{
    ::SetCapture(GetFocus());
}

void CltWindowRoot::CaptureSystemPointer()
{
    if (m_hWnd) ::SetCapture(m_hWnd);
}

void CltWindowRoot::ReleaseSystemPointer()
{
    ::ReleaseCapture();
}

bool CltWindowRoot::AskSystemPointerLeave()
{
    TRACKMOUSEEVENT leave = {sizeof leave, TME_LEAVE, m_hWnd, 0};
    return m_hWnd && TrackMouseEvent(&leave);
}

bool CltWindowRoot::IsShiftDown() const
{
    return (GetKeyState(VK_SHIFT) & 0x8000) != 0;
}

void CltWindowRoot::PlayFocusSound(const char* path)
{
    if (!m_bFocusSoundsMuted) clt_PlaySound(path, nullptr, SND_FILENAME | SND_NOSTOP | SND_ASYNC);
}

bool CltWindowRoot::GetWindowRect(CltRect& r) const
{
    RECT rc;
    if (!m_hWnd || !::GetWindowRect(m_hWnd, &rc)) return false;
    r.Set(rc.left, rc.top, rc.right, rc.bottom);
    return true;
}

void CltWindowRoot::MoveWindow(const CltRect& r)
{
    if (m_hWnd) ::MoveWindow(m_hWnd, r.left, r.top, r.Width(), r.Height(), TRUE);
}

void CltWindowRoot::AnnounceFocus(CltWidget* w)
{
    if (int32_t number = clt_AccessiblePartNumber(this, w); number && m_hWnd)
        NotifyWinEvent(EVENT_OBJECT_FOCUS, m_hWnd, OBJID_CLIENT, number);
}

void CltWindowRoot::AnnounceNewParts()
{
    if (m_hWnd) NotifyWinEvent(EVENT_OBJECT_REORDER, m_hWnd, OBJID_CLIENT, CHILDID_SELF);
}

// The object reaches the reader's process through COM, which this thread joins on the first
// request (a thread that joined already keeps its apartment).
bool CltWindowRoot::AnswerGetObject(WPARAM wParam, LPARAM lParam, LRESULT& answer)
{
    if (LONG(lParam) != OBJID_CLIENT || !m_hWnd) return false;
    if (!m_pAccessible)
    {
        clt_CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        m_pAccessible = new CltAccessible(m_hWnd, this);
    }
    answer = clt_LresultFromObject(__uuidof(IAccessible), wParam, m_pAccessible);
    return true;
}
