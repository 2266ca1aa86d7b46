// CTarnLauncher's window side: Run (skin, window, widget tree, first page, message loop,
// clean-up), the window procedure, painting and the page title.
#include "product/tarn_Launcher.h"

#include "FrameWork/_cult/Source/clt_Canvas.h"
#include "FrameWork/_cult/Source/clt_CaptionBar.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_ImageButton.h"
#include "FrameWork/_cult/Source/clt_ImagePanel.h"
#include "FrameWork/_cult/Source/clt_Scale.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_SystemEntries.h"
#include "FrameWork/_cult/Source/clt_TextButton.h"
#include "FrameWork/_cult/Source/clt_WindowRoot.h"
#include "FrameWork/_lfx/Source/lfx_EnvNames.h"
#include "FrameWork/_lfx/Source/lfx_System.h"

namespace
{
HINSTANCE Instance()
{
    return static_cast<HINSTANCE>(clt_GetState()->m_hInstance);
}

HFONT CreateSkinFont(const char* face, LONG height, BYTE charset)
{
    LOGFONTA font = {};
    font.lfHeight = height;
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = charset;
    font.lfQuality = ANTIALIASED_QUALITY;
    lstrcpynA(font.lfFaceName, face, LF_FACESIZE);
    return CreateFontIndirectA(&font);
}
} // namespace

int CTarnLauncher::Run()
{
    m_pCaption = nullptr;
    m_pCloseButton = m_pMinimiseButton = nullptr;
    // The window opens on the main screen, whose DPI the desktop's context reports to a
    // program that declares itself aware of each screen's DPI (the manifest does).
    HDC screen = GetDC(GetDesktopWindow());
    m_nDpi = clt_UsableDpi(GetDeviceCaps(screen, LOGPIXELSY));
    if (GetDeviceCaps(screen, BITSPIXEL) <= 8) m_hDrawDib = clt_DrawDibOpen();
    ReleaseDC(GetDesktopWindow(), screen);
    CreateFonts();
    m_Skin.Load(g_Env[lfx_env::DataDir], m_nDpi);
    m_hArrow = LoadCursorA(nullptr, IDC_ARROW);
    LoadSmallIcon();
    CltString windowClass;
    clt_RegisterWindowClass(windowClass, CS_DBLCLKS, m_hArrow, nullptr,
                            LoadIconA(Instance(), MAKEINTRESOURCEA(1)));
    // The window stays hidden until its region, caption and first page are in place, and
    // is painted as it appears: shown at creation, it would flash as a grey rectangle
    // without its shape or picture for a moment. The opening sound and the common controls
    // wait for the message loop (see there). The first page's focus sound, which the
    // opening sound would keep from playing, is not played.
    if (Create(nullptr, WS_POPUP | WS_SYSMENU, 0, windowClass.c_str(), false))
    {
        ApplyRegion();
        CreateWidgets();
        SetWindowTextA(m_hWnd, g_Env[lfx_env::ProductName].c_str());
        OnWindowReady();
        m_pRoot->MuteFocusSounds(true);
        ShowFirstPage();
        m_pRoot->MuteFocusSounds(false);
        m_pRoot->ApplyRepaints();
        if (m_hWnd)
        {
            ShowWindow(m_hWnd, SW_SHOWNORMAL);
            UpdateWindow(m_hWnd);
        }
        MessageLoop();
    }
    CleanUp();
    return 0;
}

// Both fonts share one character set: Shift-JIS when CharacterSet says so exactly.
void CTarnLauncher::CreateFonts()
{
    BYTE charset = g_Env[lfx_env::CharacterSet] == CltString("SHIFTJIS_CHARSET") ? SHIFTJIS_CHARSET
                                                                                 : DEFAULT_CHARSET;
    DeleteObject(m_hCaptionFont);
    DeleteObject(m_hButtonFont);
    m_hCaptionFont = CreateSkinFont("Arial Bold", clt_Scale(-15, m_nDpi), charset);
    m_hButtonFont = CreateSkinFont("Arial", clt_Scale(-30, m_nDpi), charset);
}

void CTarnLauncher::LoadSmallIcon()
{
    if (m_hSmallIcon) DestroyIcon(m_hSmallIcon);
    int32_t size = clt_Scale(kIconSize, m_nDpi);
    m_hSmallIcon =
        static_cast<HICON>(LoadImageA(Instance(), MAKEINTRESOURCEA(1), IMAGE_ICON, size, size, 0));
}

// A region file the system refuses, or none, leaves the window rectangular.
void CTarnLauncher::ApplyRegion()
{
    if (HRGN region = m_Skin.CreateRegion(m_nDpi)) SetWindowRgn(m_hWnd, region, TRUE);
}

void CTarnLauncher::CreateWidgets()
{
    m_pRoot = new CltWindowRoot;
    CltRect root(m_rcRoot.left, m_rcRoot.top, m_rcRoot.right, m_rcRoot.bottom);
    m_pRoot->Create(nullptr, root, CltWidgetVisible, 0);
    m_pRoot->SetDpi(m_nDpi);
    m_pRoot->Attach(m_hWnd);
    m_pBackground = static_cast<CltImagePanel*>(
        m_pRoot->CreateChild(g_ImagePanelFactory, root, CltWidgetVisible, kBackgroundId));
    m_pBackground->SetImage(m_Skin.background, 0, 0);
    m_pBackground->SetDraggable(false);
    m_Surface.root = m_pRoot;
    m_Surface.panel = m_pBackground;
    m_Surface.buttonFont = m_hButtonFont;
    m_Surface.normal = &m_Skin.unselect;
    m_Surface.pressed = &m_Skin.pressed;
    m_Surface.focused = &m_Skin.focused;
    m_pSurface = &m_Surface;
}

void CTarnLauncher::ShowFirstPage()
{
    const char* first = m_pMain->m_dwState == LFX_STATE_INSTALLED       ? "LAUNCH"
                        : m_pMain->m_dwState == LFX_STATE_NOT_INSTALLED ? "INSTALL"
                        : m_pMain->m_dwState == LFX_STATE_UNINSTALL     ? "UNINSTALL"
                                                                        : nullptr;
    if (!first) return;
    m_pMain->ShowPage(first);
    SetCursor(m_hArrow);
}

// Whenever no message waits, the loop does one piece of the work that the window need not
// wait for. First the opening sound and the common controls (which only the boxes use):
// they take 15 to 40 ms to start, and a painted window may reach the screen only when its
// thread first finds no message waiting (Wine puts it there then), so they come after that
// moment. Then one label of the pages not yet shown at a time, until all are drawn: a page
// change later finds its labels drawn (a label takes about a millisecond, so input waits no
// longer than that).
void CTarnLauncher::MessageLoop()
{
    MSG msg;
    for (;;)
    {
        if (!PeekMessageA(&msg, nullptr, 0, 0, PM_NOREMOVE) && DoIdleWork()) continue;
        if (GetMessageA(&msg, nullptr, 0, 0) <= 0) return;
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
}

// One piece of the work that the window need not wait for; false when none is left.
bool CTarnLauncher::DoIdleWork()
{
    if (m_bOpened) return PrepareNextLabel();
    m_bOpened = true;
    if (m_hWnd) m_pMain->PlaySoundByName("OPEN", false);
    clt_InitCommonControls();
    return true;
}

// Draws the next label of the active pages; false when none is left.
bool CTarnLauncher::PrepareNextLabel()
{
    LfxPageList* pages = m_pMain ? m_pMain->m_lstPages : nullptr;
    if (m_nLabelPage == -2) m_nLabelPage = pages ? pages->Head() : -1;
    while (m_nLabelPage != -1)
    {
        auto* page = dynamic_cast<LfxButtonPage*>(pages->Element(m_nLabelPage));
        if (page && page->PrepareLabel(m_nLabelEntry++)) return true;
        m_nLabelPage = pages->Next(m_nLabelPage);
        m_nLabelEntry = 0;
    }
    return false;
}

void CTarnLauncher::CleanUp()
{
    if (m_hDrawDib) clt_DrawDibClose(m_hDrawDib);
    m_hDrawDib = nullptr;
    m_Canvas.Release();
    if (m_hSmallIcon) DestroyIcon(m_hSmallIcon);
    m_hSmallIcon = nullptr;
    m_pSurface = nullptr;
    m_Surface = LfxPageSurface();
    // The tree goes before the fonts and images its widgets use.
    delete m_pRoot;
    m_pRoot = nullptr;
    m_pBackground = nullptr;
    m_pCaption = nullptr;
    m_pCloseButton = m_pMinimiseButton = nullptr;
    DeleteObject(m_hCaptionFont);
    DeleteObject(m_hButtonFont);
    m_hCaptionFont = m_hButtonFont = nullptr;
    m_Skin.Release();
}

int CTarnLauncher::DestroyMainWindow()
{
    if (m_hWnd) DestroyWindow(m_hWnd);
    m_hWnd = nullptr;
    return 1;
}

// Every message goes to the widget tree first. The page answers the keys and commands it
// is given; every other message the window does not handle goes to the system's default
// procedure, page or no page. (A page that answered every message with 1 would leave
// Alt+F4 and the taskbar's Close without effect, answer 1 for the window's icon and to a
// screen reader's request for its object, and keep the system from setting the cursor.)
// What a message changed is repainted once the message has been handled.
LRESULT CTarnLauncher::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    LRESULT result = OnMessage(message, wParam, lParam);
    if (m_pRoot) m_pRoot->ApplyRepaints();
    return result;
}

LRESULT CTarnLauncher::OnMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (m_pRoot) m_pRoot->HandleMessage(message, wParam, lParam);
    switch (message)
    {
    case WM_CREATE: return OnCreate();
    case WM_DESTROY: PostQuitMessage(0); return 0;
    case WM_ACTIVATE: return OnActivate(wParam);
    case WM_PAINT: return OnPaintMessage();
    case WM_CLOSE: return CloseSequence();
    case WM_ENDSESSION: return wParam ? CloseSequence() : 0;
    case WM_KEYDOWN: return OnKeyDown(wParam, lParam);
    case WM_COMMAND: return OnCommand(wParam, lParam);
    case WM_LBUTTONDBLCLK: return OnLButtonDblClk();
    case WM_GETOBJECT: return OnGetObject(wParam, lParam);
    case WM_DPICHANGED: return OnDpiChanged(wParam, lParam);
    default: return CltWindow::WindowProc(message, wParam, lParam);
    }
}

LRESULT CTarnLauncher::ToCurrentPage(UINT message, WPARAM wParam, LPARAM lParam)
{
    auto* page = dynamic_cast<LfxButtonPage*>(m_pMain ? m_pMain->GetCurrentPage() : nullptr);
    if (page) return page->HandleMessage(message, wParam, lParam);
    return CltWindow::WindowProc(message, wParam, lParam);
}

// The window takes the background's size and stands in the middle of the desktop.
LRESULT CTarnLauncher::OnCreate()
{
    int32_t width = m_Skin.background.Width(), height = m_Skin.background.Height();
    m_rcWindow = RECT{0, 0, width, height};
    m_rcRoot = m_rcWindow;
    RECT desktop;
    GetClientRect(GetDesktopWindow(), &desktop);
    POINT at = CentredPosition(desktop, width, height);
    MoveWindow(m_hWnd, at.x, at.y, width, height, TRUE);
    return 0;
}

// A minimised window activated by the system comes back with its title buttons at rest;
// the caption shows whether the window is active.
LRESULT CTarnLauncher::OnActivate(WPARAM wParam)
{
    if (HIWORD(wParam) != 0 && LOWORD(wParam) == WA_ACTIVE)
    {
        ShowWindow(m_hWnd, SW_SHOWNORMAL);
        if (m_pMinimiseButton && m_pCloseButton)
        {
            m_pMinimiseButton->ShowResting();
            m_pCloseButton->ShowResting();
        }
    }
    ShowCaption(LOWORD(wParam) != WA_INACTIVE);
    return 0;
}

void CTarnLauncher::ShowCaption(bool active)
{
    if (!m_pCaption) return;
    m_pCaption->SetContent(active ? m_Skin.active : m_Skin.inactive, m_strTitle.c_str(),
                           m_hCaptionFont);
    m_pCaption->Invalidate(m_pCaption->Rect());
}

LRESULT CTarnLauncher::OnPaintMessage()
{
    PAINTSTRUCT ps;
    BeginPaint(m_hWnd, &ps);
    LRESULT result = Paint(ps);
    EndPaint(m_hWnd, &ps);
    return result;
}

// Only the update rectangle is composed, off screen, and put on the screen in one piece.
LRESULT CTarnLauncher::Paint(PAINTSTRUCT& ps)
{
    if (!m_pRoot) return 0;
    CltRect area(ps.rcPaint.left, ps.rcPaint.top, ps.rcPaint.right, ps.rcPaint.bottom);
    if (!area.CoversNothing() && m_Canvas.Begin(area, ps.hdc))
    {
        m_pRoot->PaintTree(m_Canvas, area);
        CltDibImage* pixels = m_Canvas.Pixels();
        if (m_hDrawDib && pixels)
        {
            // The area's rows, the canvas's top rows, are a bottom-up picture of their own.
            BITMAPINFOHEADER header = {};
            header.biSize = sizeof header;
            header.biWidth = pixels->m_nWidth;
            header.biHeight = area.Height();
            header.biPlanes = 1;
            header.biBitCount = 32;
            header.biCompression = BI_RGB;
            header.biSizeImage = uint32_t(pixels->m_nPitch) * uint32_t(area.Height());
            uint8_t* rows =
                pixels->m_pData + size_t(pixels->m_nHeight - area.Height()) * pixels->m_nPitch;
            clt_DrawDibDraw(m_hDrawDib, ps.hdc, area.left, area.top, area.Width(), area.Height(),
                            &header, rows, 0, 0, area.Width(), area.Height(), 0);
        }
        else
            BitBlt(ps.hdc, area.left, area.top, area.Width(), area.Height(), m_Canvas.Context(),
                   area.left, area.top, SRCCOPY);
    }
    int32_t size = clt_Scale(kIconSize, m_nDpi);
    DrawIconEx(ps.hdc, clt_Scale(kIconX, m_nDpi), clt_Scale(kIconY, m_nDpi), m_hSmallIcon, size,
               size, 0, nullptr, DI_NORMAL);
    return 0;
}

LRESULT CTarnLauncher::OnKeyDown(WPARAM wParam, LPARAM lParam)
{
    LfxPage* page = m_pMain ? m_pMain->GetCurrentPage() : nullptr;
    if (wParam != VK_ESCAPE || !page) return 0;
    return ToCurrentPage(WM_KEYDOWN, wParam, lParam);
}

LRESULT CTarnLauncher::OnCommand(WPARAM wParam, LPARAM lParam)
{
    switch (LOWORD(wParam))
    {
    case 1:
    case kCloseId: return CloseSequence();
    case kMinimiseId:
        m_pMain->PlaySoundByName("", false);
        CloseWindow(m_hWnd);
        return 0;
    default:
        if (!m_pMain->GetCurrentPage()) return 0;
        return ToCurrentPage(WM_COMMAND, wParam, lParam);
    }
}

// Help closed, sound stopped, window gone; WM_DESTROY then ends the message loop.
LRESULT CTarnLauncher::CloseSequence()
{
    m_pMain->CallWinHelp(HELP_QUIT, 0);
    m_pMain->PlaySoundByName("", false);
    if (m_hWnd) DestroyWindow(m_hWnd);
    m_hWnd = nullptr;
    return 0;
}

// Screen readers get the page's buttons and the title buttons; the system describes the
// window's frame.
LRESULT CTarnLauncher::OnGetObject(WPARAM wParam, LPARAM lParam)
{
    LRESULT answer;
    if (m_pRoot && m_pRoot->AnswerGetObject(wParam, lParam, answer)) return answer;
    return CltWindow::WindowProc(WM_GETOBJECT, wParam, lParam);
}

// Moved to a screen of another DPI (or its DPI changed): skin, fonts, icon, region and
// widgets are made again for it, the page buttons keeping their label, look and focus. The
// window goes where the system suggests, or without a suggestion keeps its centre.
LRESULT CTarnLauncher::OnDpiChanged(WPARAM wParam, LPARAM lParam)
{
    int32_t dpi = clt_UsableDpi(HIWORD(wParam)), old = m_nDpi;
    if (dpi == old || !m_pRoot || !m_pBackground) return 0;
    RECT was;
    GetWindowRect(m_hWnd, &was);
    m_nDpi = dpi;
    CreateFonts();
    LoadSmallIcon();
    m_Skin.Load(g_Env[lfx_env::DataDir], m_nDpi);
    int32_t width = m_Skin.background.Width(), height = m_Skin.background.Height();
    m_rcWindow = m_rcRoot = RECT{0, 0, width, height};
    m_pRoot->SetDpi(m_nDpi);
    m_pRoot->SetRect(CltRect(0, 0, width, height));
    m_pBackground->SetRect(CltRect(0, 0, width, height));
    m_pBackground->SetImage(m_Skin.background, 0, 0);
    m_Surface.buttonFont = m_hButtonFont;
    for (CltWidget* w = m_pBackground->FirstChild(); w; w = w->NextSibling())
        if (auto* button = dynamic_cast<CltTextButton*>(w))
        {
            auto design = [old](int32_t v) { return (v * kCltDesignDpi + old / 2) / old; };
            int32_t x = clt_Scale(design(w->Rect().left), dpi),
                    y = clt_Scale(design(w->Rect().top), dpi);
            CltString label = button->Name(); // SetContent names the button anew
            button->SetRect(CltRect(x, y, x, y));
            button->SetContent(m_hButtonFont, label.c_str(), m_Surface.normal, m_Surface.pressed,
                               m_Surface.focused);
        }
    CltString title = m_strTitle;
    SetTitle(title.c_str());
    ShowCaption(GetActiveWindow() == m_hWnd);
    ApplyRegion();
    const RECT* suggested = reinterpret_cast<const RECT*>(lParam);
    POINT at = suggested
                   ? POINT{suggested->left, suggested->top}
                   : POINT{(was.left + was.right - width) / 2, (was.top + was.bottom - height) / 2};
    SetWindowPos(m_hWnd, nullptr, at.x, at.y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    InvalidateRect(m_hWnd, nullptr, FALSE);
    m_nLabelPage = -2; // the pages' labels are drawn ahead again, at this DPI
    return 0;
}

// Shift + Ctrl + double-click shows the version text.
LRESULT CTarnLauncher::OnLButtonDblClk()
{
    if ((GetKeyState(VK_SHIFT) & 0x8000) && (GetKeyState(VK_CONTROL) & 0x8000))
        m_pMain->ShowMessage(m_pMain->m_strVersion.c_str(), MB_ICONINFORMATION);
    return 0;
}

// One caption bar at a time: the previous one and its buttons go with the new title.
void CTarnLauncher::SetTitle(const char* text)
{
    m_strTitle = text;
    if (!m_pBackground) return;
    if (m_pCaption) m_pBackground->RemoveChild(m_pCaption);
    m_pCaption = static_cast<CltCaptionBar*>(m_pBackground->CreateChild(
        g_CaptionBarFactory, CltRect(0, 0, clt_Scale(500, m_nDpi), clt_Scale(30, m_nDpi)),
        CltWidgetVisible, kCaptionId));
    m_pCaption->SetContent(m_Skin.active, m_strTitle.c_str(), m_hCaptionFont);
    m_pMinimiseButton = AddTitleButton(kMinimiseId, "Minimize", m_Skin.minimize, m_Skin.ovrmin,
                                       m_Skin.selmin, kMinimiseHotArea, kMinimiseX);
    m_pCloseButton = AddTitleButton(kCloseId, "Close", m_Skin.close, m_Skin.ovrclose,
                                    m_Skin.selclose, kCloseHotArea, kCloseX);
}

// A title button: its three pictures, lit over its hot area, at (x, 0) in design coordinates.
CltImageButton* CTarnLauncher::AddTitleButton(uint32_t id, const char* name,
                                              const CltImageRef& normal, const CltImageRef& hover,
                                              const CltImageRef& pressed, const CltRect& hotArea,
                                              int32_t x)
{
    auto* button = static_cast<CltImageButton*>(
        m_pCaption->CreateChild(g_ImageButtonFactory, CltRect(), CltWidgetVisible, id));
    if (!button) return nullptr;
    button->SetImages(normal, hover, pressed);
    button->SetHotArea(hotArea);
    button->MoveTo(clt_Scale(x, m_nDpi), 0);
    button->SetName(name);
    return button;
}

int CTarnLauncher::OnWindowReady()
{
    return 1;
}
