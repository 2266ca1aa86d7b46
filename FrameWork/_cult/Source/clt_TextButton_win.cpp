// CltTextButton: labelled page buttons.
#include "FrameWork/_cult/Source/clt_TextButton.h"

#include <memory>

#include "FrameWork/_cult/Source/clt_Blitter.h"
#include "FrameWork/_cult/Source/clt_Canvas.h"
#include "FrameWork/_cult/Source/clt_DibImage.h"

CltWidgetFactoryOf<CltTextButton> g_TextButtonFactory;

void CltTextButton::SetContent(HFONT font, const char* text, const CltImage* normal,
                               const CltImage* pressed, const CltImage* highlighted)
{
    m_pNormal = normal;
    m_pPressed = pressed;
    m_pHighlighted = highlighted;
    m_dwTextColour = 0;
    // A screen reader speaks the label as it reads: in the code page of the font's
    // character set (the system's for the default set).
    LOGFONTA face = {};
    CHARSETINFO set = {};
    bool known = GetObjectA(font, sizeof face, &face) &&
                 TranslateCharsetInfo(reinterpret_cast<DWORD*>(uintptr_t(face.lfCharSet)), &set,
                                      TCI_SRCCHARSET);
    SetName(text, known ? set.ciACP : 0);
    int32_t width = normal ? normal->m_nWidth : 0, height = normal ? normal->m_nHeight : 0;
    SetRect(CltRect(m_Rect.left, m_Rect.top, m_Rect.left + width, m_Rect.top + height));

    // A button too small for a label area (or without an image) has no label. Margins and
    // offsets are design sizes, scaled with the images for the window's DPI.
    int32_t w = width - 2 * Scaled(kMargin), h = height - 2 * Scaled(kMargin);
    if (w <= 0 || h <= 0 || !m_TextMask.Create(g_pfGrey8, w, h, OriginTopLeft)) return;
    CltDibImage large;
    CltDC dc;
    if (!large.Create(g_pfGrey8, 2 * w, 2 * h, OriginTopLeft) || !dc.CreateForScreen()) return;
    dc.Select(large.m_hBitmap);
    dc.SelectFont(font);
    SetBkMode(dc.Handle(), OPAQUE);
    SetTextColor(dc.Handle(), RGB(255, 255, 255));
    SetBkColor(dc.Handle(), RGB(0, 0, 0));
    RECT box = {0, Scaled(3), 2 * w, 2 * h + Scaled(3)};
    DrawTextA(dc.Handle(), text, -1, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    GdiFlush(); // the section's pixels are read directly below
    dc.RestoreFont();
    std::unique_ptr<CltBlitter> blitter(CreateBlitter());
    blitter->Halve(m_TextMask, large, 0);
    dc.Release();
}

void CltTextButton::Paint(CltCanvas& canvas, const CltRect&)
{
    const CltImage* background;
    uint32_t colour;
    switch (m_nState)
    {
    case ButtonNormal: background = m_pNormal, colour = kNormalColour; break;
    case ButtonHighlighted: background = m_pHighlighted, colour = kHighlightedColour; break;
    case ButtonPressed: background = m_pPressed, colour = kPressedColour; break;
    default: return;
    }
    m_nTextX = Scaled(1);
    m_nTextY = Scaled(-2);
    CltDibImage* target = canvas.Pixels();
    if (!target) return;
    std::unique_ptr<CltBlitter> blitter(CreateBlitter());
    const CltRect& origin = canvas.Origin();
    int32_t x = m_Rect.left - origin.left, y = m_Rect.top - origin.top;
    if (background) blitter->AlphaBlit(0, *target, *background, x, y);
    uint8_t tint[4];
    blitter->MixColour(0, m_dwTextColour, colour, 255, tint);
    if (m_TextMask.m_pData)
        blitter->TintBlit(0, *target, m_TextMask, x + Scaled(kMargin) + m_nTextX,
                          y + Scaled(kMargin) + m_nTextY, tint);
}
