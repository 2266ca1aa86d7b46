// CltCanvas: the off-screen image of one paint pass.
#include "FrameWork/_cult/Source/clt_Canvas.h"

bool CltCanvas::Create(const CltRect& area, HDC reference)
{
    m_Origin = area;
    if (!m_Image.Create(area.Width(), area.Height(), OriginBottomLeft, reference)) return false;
    SetWindowOrgEx(m_Image.Context(), area.left, area.top, nullptr);
    return true;
}

CltDibImage* CltCanvas::Pixels() const
{
    GdiFlush();
    return m_Image.Image();
}
