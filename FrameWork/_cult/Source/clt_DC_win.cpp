// CltDC and the screen's colour depth.
#include "FrameWork/_cult/Source/clt_DC.h"

bool CltDC::CreateCompatible(HDC dc)
{
    Release();
    m_hDC = CreateCompatibleDC(dc);
    m_bOwned = m_hDC ? 1 : 0;
    return m_hDC != nullptr;
}

bool CltDC::CreateForScreen()
{
    HWND desktop = GetDesktopWindow();
    HDC screen = GetDC(desktop);
    bool made = CreateCompatible(screen);
    ReleaseDC(desktop, screen);
    return made;
}

void CltDC::SelectKind(Kind kind, HGDIOBJ object)
{
    if (!m_hDC) return;
    m_lstStacks[kind].PushBack(SelectObject(m_hDC, object));
}

void CltDC::RestoreKind(Kind kind)
{
    CltIndexList<HGDIOBJ>& stack = m_lstStacks[kind];
    if (!m_hDC || stack.IsEmpty()) return;
    int32_t top = stack.Tail();
    SelectObject(m_hDC, stack.Element(top));
    stack.Remove(top);
}

BOOL CltDC::BitBlt(int x, int y, int w, int h, HDC source, int sx, int sy, DWORD rop) const
{
    if (!m_hDC) return 0;
    return ::BitBlt(m_hDC, x, y, w, h, source, sx, sy, rop);
}

void CltDC::Release()
{
    for (int kind = KindBitmap; kind < KindCount; ++kind)
        RestoreKind(Kind(kind));
    if (m_hDC && m_bOwned) DeleteDC(m_hDC);
    m_hDC = nullptr;
    m_bOwned = 0;
}

int CltDC::Depth(Kind kind) const
{
    int n = 0;
    const CltIndexList<HGDIOBJ>& stack = m_lstStacks[kind];
    for (int32_t i = stack.Head(); i != -1; i = stack.Next(i))
        ++n;
    return n;
}

int GetScreenBitsPerPixel()
{
    HWND desktop = GetDesktopWindow();
    HDC screen = GetDC(desktop);
    int bits = GetDeviceCaps(screen, BITSPIXEL);
    ReleaseDC(desktop, screen);
    return bits;
}
