// CltCaptionBar: the skinned title bar.
#include "FrameWork/_cult/Source/clt_CaptionBar.h"

#include "FrameWork/_cult/Source/clt_Canvas.h"

CltWidgetFactoryOf<CltCaptionBar> g_CaptionBarFactory;

void CltCaptionBar::SetContent(const CltImageRef& image, const char* title, HFONT font)
{
    m_Image = image;
    m_strTitle = title;
    m_hFont = font;
}

void CltCaptionBar::Paint(CltCanvas& canvas, const CltRect&)
{
    HDC dc = canvas.Context();
    if (!m_Image.IsEmpty())
        BitBlt(dc, m_Rect.left, m_Rect.top, m_Rect.Width(), m_Rect.Height(), m_Image.Context(), 0,
               0, SRCCOPY);

    // The title's own size, measured on the desktop's context, placed at (25, 6).
    HWND desktop = GetDesktopWindow();
    HDC screen = GetDC(desktop);
    HGDIOBJ old = SelectObject(screen, m_hFont);
    RECT t = {0, 0, 0, 0};
    DrawTextA(screen, m_strTitle.c_str(), -1, &t, DT_CALCRECT);
    SelectObject(screen, old);
    ReleaseDC(desktop, screen);
    OffsetRect(&t, Scaled(kTitleX), Scaled(kTitleY));

    old = SelectObject(dc, m_hFont);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, kTitleColour);
    DrawTextA(dc, m_strTitle.c_str(), -1, &t, DT_CENTER);
    SelectObject(dc, old);
}

void CltCaptionBar::OnLButtonDown(uint32_t, int32_t x, int32_t y)
{
    if (m_bDragging || !m_pHost || !m_pHost->GetWindowRect(m_WindowRect)) return;
    m_pHost->CaptureSystemPointer();
    m_pHost->SetCapture(this);
    m_nStartX = x;
    m_nStartY = y;
    m_bDragging = true;
}

void CltCaptionBar::OnMouseMove(uint32_t, int32_t x, int32_t y)
{
    if (!m_bDragging) return;
    m_WindowRect.Offset(x - m_nStartX, y - m_nStartY);
    m_pHost->MoveWindow(m_WindowRect);
}

void CltCaptionBar::OnLButtonUp(uint32_t, int32_t, int32_t)
{
    if (!m_bDragging) return;
    m_pHost->ReleaseSystemPointer();
    m_pHost->ReleaseCapture();
    m_bDragging = false;
}
