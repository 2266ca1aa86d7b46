// CltCanvas: the off-screen image of the paint passes.
#include "FrameWork/_cult/Source/clt_Canvas.h"

#include <algorithm>

bool CltCanvas::Begin(const CltRect& area, HDC reference)
{
    m_Origin = area;
    if (m_Image.Width() < area.Width() || m_Image.Height() < area.Height())
    {
        int32_t width = std::max(m_Image.Width(), area.Width());
        int32_t height = std::max(m_Image.Height(), area.Height());
        if (!m_Image.Create(width, height, OriginBottomLeft, reference)) return false;
    }
    SetWindowOrgEx(m_Image.Context(), area.left, area.top, nullptr);
    return true;
}

CltDibImage* CltCanvas::Pixels() const
{
    GdiFlush();
    return m_Image.Image();
}
