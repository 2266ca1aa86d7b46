// CltCaptionBar: the window's title bar: a caption image copied as it is, the title drawn
// transparently with its top-left at (25, 6) (scaled for the window's DPI), and dragging it moves
// the window by exactly the pointer's movement. The window rectangle stored at the press
// accumulates the moves, so the grabbed point stays under the pointer. (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_ImageRef.h"
#include "FrameWork/_cult/Source/clt_String.h"
#include "FrameWork/_cult/Source/clt_Widget.h"

class CltCaptionBar : public CltWidget
{
  public:
    static constexpr COLORREF kTitleColour = 0xC8783C; // blue 200, green 120, red 60
    static constexpr int32_t kTitleX = 25, kTitleY = 6;

    // Shares the image, copies the title and keeps the font (not owned); no repaint.
    void SetContent(const CltImageRef& image, const char* title, HFONT font);
    void Paint(CltCanvas& canvas, const CltRect& area) override;
    void OnLButtonDown(uint32_t flags, int32_t x, int32_t y) override;
    void OnMouseMove(uint32_t flags, int32_t x, int32_t y) override;
    void OnLButtonUp(uint32_t flags, int32_t x, int32_t y) override;

    const CltString& Title() const { return m_strTitle; }
    bool IsDragging() const { return m_bDragging; }

  private:
    CltImageRef m_Image;
    bool m_bDragging = false;
    CltRect m_WindowRect;
    int32_t m_nStartX = 0, m_nStartY = 0;
    HFONT m_hFont = nullptr;
    CltString m_strTitle;
};

extern CltWidgetFactoryOf<CltCaptionBar> g_CaptionBarFactory;
