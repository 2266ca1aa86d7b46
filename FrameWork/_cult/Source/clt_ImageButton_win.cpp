// CltImageButton: colour-keyed image buttons.
#include "FrameWork/_cult/Source/clt_ImageButton.h"

#include <cstring>
#include <memory>

#include "FrameWork/_cult/Source/clt_Blitter.h"
#include "FrameWork/_cult/Source/clt_Canvas.h"

CltWidgetFactoryOf<CltImageButton> g_ImageButtonFactory;

void CltImageButton::SetImage(const CltImageRef& image, CltCell normal, CltCell highlighted,
                              CltCell pressed)
{
    m_Images[0] = m_Images[1] = m_Images[2] = image;
    m_Cells[0] = normal;
    m_Cells[1] = highlighted;
    m_Cells[2] = pressed;
}

void CltImageButton::SetImages(const CltImageRef& normal, const CltImageRef& highlighted,
                               const CltImageRef& pressed)
{
    m_Images[0] = normal;
    m_Images[1] = highlighted;
    m_Images[2] = pressed;
    m_Cells[0] = m_Cells[1] = m_Cells[2] = CltCell();
}

void CltImageButton::MoveTo(int32_t x, int32_t y)
{
    CltRect r;
    if (CltDibImage* image = m_Images[0].Image())
        r = image->GetFrameRect(m_Cells[0].column, m_Cells[0].row);
    r.Offset(x - r.left, y - r.top);
    m_ImageRect = r;
    SetRect(r);
}

void CltImageButton::Paint(CltCanvas& canvas, const CltRect&)
{
    int32_t look = Look() == ButtonHighlighted ? 1 : Look() == ButtonPressed ? 2 : 0;
    CltDibImage* image = m_Images[look].Image();
    CltDibImage* target = canvas.Pixels();
    // The key is read from row 1 of the design image, the row it became when the image was
    // scaled (by nearest pixels) for the window's DPI: it needs that row at least.
    int32_t keyRow = Scaled(1);
    if (!image || !target || image->m_nWidth < 1 || image->m_nHeight <= keyRow) return;
    CltRect s = image->GetFrameRect(m_Cells[look].column, m_Cells[look].row);
    uint32_t key;
    memcpy(&key, image->PixelAddress(0, keyRow), sizeof key);
    std::unique_ptr<CltBlitter> blitter(CreateBlitter());
    const CltRect& origin = canvas.Origin();
    blitter->KeyBlit(*target, m_ImageRect.left - origin.left, m_ImageRect.top - origin.top, *image,
                     s.left, s.top, s.Width(), s.Height(), key);
}
