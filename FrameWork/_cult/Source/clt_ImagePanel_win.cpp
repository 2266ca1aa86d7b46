// CltImagePanel: a panel showing an image.
#include "FrameWork/_cult/Source/clt_ImagePanel.h"

#include "FrameWork/_cult/Source/clt_Canvas.h"

CltWidgetFactoryOf<CltImagePanel> g_ImagePanelFactory;

void CltImagePanel::SetImage(const CltImageRef& image, int32_t x, int32_t y)
{
    m_Image = image;
    m_nSourceX = x;
    m_nSourceY = y;
}

void CltImagePanel::Paint(CltCanvas& canvas, const CltRect&)
{
    if (m_Image.IsEmpty()) return;
    BitBlt(canvas.Context(), m_Rect.left, m_Rect.top, m_Rect.Width(), m_Rect.Height(),
           m_Image.Context(), m_nSourceX, m_nSourceY, SRCCOPY);
}
