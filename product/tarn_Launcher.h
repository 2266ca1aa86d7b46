// CTarnLauncher: this product's launcher class. It holds the product hooks that the
// launcher core calls and is at the same time the launcher's main window: a captionless,
// skinned popup whose widget tree shows the background, the caption bar with its minimise
// and close buttons, and the page buttons that the pages lend it.
// One static instance registers itself during static construction.
// (Windows only.)
#pragma once

#include "FrameWork/_cult/Source/clt_Canvas.h"
#include "FrameWork/_cult/Source/clt_Window.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Page.h"
#include "product/tarn_Skin.h"

#include <vfw.h>
#include <windows.h>

class CltCaptionBar;
class CltImageButton;
class CltImagePanel;
class CltWindowRoot;

class CTarnLauncher : public LfxLauncher, public CltWindow
{
  public:
    // Command ids of the window's own widgets.
    static constexpr uint32_t kCloseId = 0xE000, kMinimiseId = 0xE001, kBackgroundId = 0xE002,
                              kCaptionId = 0xE003;
    static constexpr int32_t kMinimiseX = 436, kCloseX = 465;
    // Where the title buttons light up (design window coordinates, edges included): their
    // pictures' margins are left out.
    static constexpr CltRect kMinimiseHotArea{443, 1, 460, 22}, kCloseHotArea{472, 1, 489, 22};
    static constexpr int32_t kIconX = 6, kIconY = 7, kIconSize = 16;

    CTarnLauncher();
    ~CTarnLauncher() override;
    int PrepareLaunch(int value, CltString& parameters, CltString& folder) override;
    int Run() override;
    int DestroyMainWindow() override;
    void AppendVersion(CltString& text) override;
    int GetBuild() override;
    virtual int OnWindowReady();
    virtual LRESULT Paint(PAINTSTRUCT& ps);

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    void SetTitle(const char* text);
    // The caption's and the page buttons' fonts, made anew from the environment.
    void CreateFonts();
    HFONT CaptionFont() const { return m_hCaptionFont; }
    HFONT ButtonFont() const { return m_hButtonFont; }

    // Where the window goes: centred on the desktop's client area, halved by arithmetic
    // shifts (a desktop narrower than the window gives a negative position).
    static POINT CentredPosition(const RECT& desktop, int32_t width, int32_t height)
    {
        return POINT{(desktop.right - width) >> 1, (desktop.bottom - height) >> 1};
    }

  private:
    LRESULT OnCreate();
    LRESULT OnActivate(WPARAM wParam);
    LRESULT OnPaintMessage();
    LRESULT OnKeyDown(WPARAM wParam, LPARAM lParam);
    LRESULT OnCommand(WPARAM wParam, LPARAM lParam);
    LRESULT OnLButtonDblClk();
    LRESULT OnGetObject(WPARAM wParam, LPARAM lParam);
    LRESULT OnDpiChanged(WPARAM wParam, LPARAM lParam);
    LRESULT CloseSequence();
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT ToCurrentPage(UINT message, WPARAM wParam, LPARAM lParam);
    CltImageButton* AddTitleButton(uint32_t id, const char* name, const CltImageRef& normal,
                                   const CltImageRef& hover, const CltImageRef& pressed,
                                   const CltRect& hotArea, int32_t x);
    void ShowCaption(bool active);
    void CreateWidgets();
    void LoadSmallIcon();
    void ApplyRegion();
    void ShowFirstPage();
    void MessageLoop();
    bool DoIdleWork();
    bool PrepareNextLabel();
    void CleanUp();

    CltWindowRoot* m_pRoot = nullptr;
    CltImagePanel* m_pBackground = nullptr;
    CltCaptionBar* m_pCaption = nullptr;
    CltImageButton* m_pCloseButton = nullptr;
    CltImageButton* m_pMinimiseButton = nullptr;
    CTarnSkin m_Skin;
    CltString m_strTitle;
    RECT m_rcWindow = {};
    RECT m_rcRoot = {};
    HICON m_hSmallIcon = nullptr;
    HCURSOR m_hArrow = nullptr;
    HFONT m_hCaptionFont = nullptr;
    HFONT m_hButtonFont = nullptr;
    HDRAWDIB m_hDrawDib = nullptr;
    CltCanvas m_Canvas;       // kept from paint to paint
    int32_t m_nDpi = 96;      // the window's: skin, fonts and layout are scaled by m_nDpi / 96
    LfxPageSurface m_Surface; // the page buttons' surface and the focus memory
    bool m_bOpened = false;   // the message loop has started the opening sound
    // The next page label the message loop draws while no message waits: the page's place
    // in the active pages' list (-1: none left) and its entry.
    int32_t m_nLabelPage = -2;
    uint32_t m_nLabelEntry = 0;
};

extern CTarnLauncher g_TarnLauncher;
