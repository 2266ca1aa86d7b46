// CltTextButton: labelled page buttons.
#include "FrameWork/_cult/Source/clt_TextButton.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "FrameWork/_cult/Source/clt_Blitter.h"
#include "FrameWork/_cult/Source/clt_Canvas.h"
#include "FrameWork/_cult/Source/clt_DibImage.h"
#include "FrameWork/_cult/Source/clt_Scale.h"

CltWidgetFactoryOf<CltTextButton> g_TextButtonFactory;

namespace
{
// Labels already drawn: a page shown again, or one whose labels were drawn while the window
// waited for input, takes its masks from here. Kept by what the drawing depends on (the
// font by its description, since a deleted font's handle may come back for another one).
struct Label
{
    LOGFONTA font;
    std::string text;
    int32_t width, height, dpi;
    CltImage mask;
};
constexpr size_t kMostLabels = 64;
std::vector<std::unique_ptr<Label>> g_Labels;

bool SameFont(const LOGFONTA& a, const LOGFONTA& b)
{
    return memcmp(&a, &b, offsetof(LOGFONTA, lfFaceName)) == 0 &&
           strcmp(a.lfFaceName, b.lfFaceName) == 0;
}

// The label's grey mask for a button image of width x height: the text drawn at double
// size in white on black, centred in the label area (the image less the margin, all sizes
// scaled for dpi), and halved. Null when the area is empty (no label).
const CltImage* LabelMask(HFONT font, const char* text, int32_t width, int32_t height, int32_t dpi)
{
    int32_t w = width - 2 * clt_Scale(CltTextButton::kMargin, dpi);
    int32_t h = height - 2 * clt_Scale(CltTextButton::kMargin, dpi);
    if (w <= 0 || h <= 0) return nullptr;
    LOGFONTA face = {};
    GetObjectA(font, sizeof face, &face);
    for (const auto& label : g_Labels)
        if (label->width == width && label->height == height && label->dpi == dpi &&
            label->text == text && SameFont(label->font, face))
            return &label->mask;
    auto label = std::make_unique<Label>();
    label->font = face;
    label->text = text;
    label->width = width, label->height = height, label->dpi = dpi;
    CltDibImage large;
    CltDC dc;
    if (!label->mask.Create(g_pfGrey8, w, h, OriginTopLeft) ||
        !large.Create(g_pfGrey8, 2 * w, 2 * h, OriginTopLeft) || !dc.CreateForScreen())
        return nullptr;
    dc.Select(large.m_hBitmap);
    dc.SelectFont(font);
    SetBkMode(dc.Handle(), OPAQUE);
    SetTextColor(dc.Handle(), RGB(255, 255, 255));
    SetBkColor(dc.Handle(), RGB(0, 0, 0));
    RECT box = {0, clt_Scale(3, dpi), 2 * w, 2 * h + clt_Scale(3, dpi)};
    DrawTextA(dc.Handle(), text, -1, &box, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    GdiFlush(); // the section's pixels are read directly below
    dc.RestoreFont();
    std::unique_ptr<CltBlitter> blitter(CreateBlitter());
    blitter->Halve(label->mask, large, 0);
    dc.Release();
    if (g_Labels.size() == kMostLabels) g_Labels.clear();
    g_Labels.push_back(std::move(label));
    return &g_Labels.back()->mask;
}
} // namespace

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
    const CltImage* mask =
        LabelMask(font, text, width, height, m_pHost ? m_pHost->Dpi() : kCltDesignDpi);
    if (mask && m_TextMask.Create(g_pfGrey8, mask->m_nWidth, mask->m_nHeight, OriginTopLeft))
        memcpy(m_TextMask.m_pData, mask->m_pData, mask->m_nSize);
}

void CltTextButton::PrepareLabel(HFONT font, const char* text, const CltImage* normal, int32_t dpi)
{
    if (normal) LabelMask(font, text, normal->m_nWidth, normal->m_nHeight, dpi);
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
