// CltTextButton: a page button: one of three state images (not owned) with the label laid
// over it in the state's colour. The label is drawn once, at double size in white on
// black, and halved into an anti-aliased grey mask; a state change only recolours it. The
// masks drawn are kept (by font, text, image size and DPI), so a label is drawn once per
// run, when its page is first shown or earlier with PrepareLabel. (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_Button.h"
#include "FrameWork/_cult/Source/clt_Image.h"

class CltTextButton : public CltButton
{
  public:
    // Label colours, as 32-bit pixel values 0xRRGGBB.
    static constexpr uint32_t kNormalColour = 0x3C78C8;
    static constexpr uint32_t kHighlightedColour = 0xAAAAAA;
    static constexpr uint32_t kPressedColour = 0xFFFFFF;
    // The label area is the image less this margin (scaled for the window's DPI) on every
    // side.
    static constexpr int32_t kMargin = 10;

    // The button takes the normal image's size; its top-left stays.
    void SetContent(HFONT font, const char* text, const CltImage* normal, const CltImage* pressed,
                    const CltImage* highlighted);
    void Paint(CltCanvas& canvas, const CltRect& area) override;
    // Draws the label that SetContent would draw for this font, text and image at this
    // DPI, ahead of the button, and keeps it.
    static void PrepareLabel(HFONT font, const char* text, const CltImage* normal, int32_t dpi);

    const CltImage& TextMask() const { return m_TextMask; }

  private:
    const CltImage* m_pNormal = nullptr;
    const CltImage* m_pPressed = nullptr;
    const CltImage* m_pHighlighted = nullptr;
    CltImage m_TextMask;
    int32_t m_nTextX = 1, m_nTextY = -2;
    uint32_t m_dwTextColour = 0;
};

extern CltWidgetFactoryOf<CltTextButton> g_TextButtonFactory;
