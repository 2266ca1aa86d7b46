// CltImageButton: a button drawn from a picture per look (normal, highlighted, pressed),
// each a cell of its image, with a colour key: every pixel whose 32-bit value equals the
// image's pixel at column 0, row 1 (of the design image, at a window DPI other than 96) is
// left out.
// (Windows only.)
#pragma once

#include "FrameWork/_cult/Source/clt_Button.h"
#include "FrameWork/_cult/Source/clt_ImageRef.h"

struct CltCell
{
    int32_t column = 0, row = 0;
};

class CltImageButton : public CltButton
{
  public:
    // Shares the image and keeps the cells of the three looks; does not repaint.
    void SetImage(const CltImageRef& image, CltCell normal, CltCell highlighted, CltCell pressed);
    // A picture of its own for each look (the whole image); does not repaint.
    void SetImages(const CltImageRef& normal, const CltImageRef& highlighted,
                   const CltImageRef& pressed);
    // Places the normal look's cell with its top-left at (x, y) and takes its size.
    void MoveTo(int32_t x, int32_t y);
    void Paint(CltCanvas& canvas, const CltRect& area) override;

  private:
    CltImageRef m_Images[3];
    CltRect m_ImageRect;
    CltCell m_Cells[3];
};

extern CltWidgetFactoryOf<CltImageButton> g_ImageButtonFactory;
