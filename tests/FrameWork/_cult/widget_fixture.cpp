// A small window built from the widget layer alone: a caption bar with its minimise and
// close buttons and three page buttons, over a background drawn in code. A person can
// drive it with mouse and keyboard; the input tests drive it from outside.
//
//   widget_fixture.exe [-LOG=FILE]
//
// With -LOG it writes one line per event, flushed at once: "ready L T R B" (the window's
// screen rectangle) after the first paint, "input NAME" for each button press, release
// and key, "state focus=ID 101=S 102=S 103=S min=S close=S" whenever a button's state or
// the focus changed, "command ID" for each command, and "window L T" after each move.
#include <windows.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>

#include "FrameWork/_cult/Source/clt_App.h"
#include "FrameWork/_cult/Source/clt_CaptionBar.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_Canvas.h"
#include "FrameWork/_cult/Source/clt_ImageButton.h"
#include "FrameWork/_cult/Source/clt_ImagePanel.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_TextButton.h"
#include "FrameWork/_cult/Source/clt_Window.h"
#include "FrameWork/_cult/Source/clt_WindowRoot.h"
#include "support/widget_Font.h"

namespace
{
constexpr int32_t kWidth = 500, kHeight = 300;
constexpr uint32_t kKey = 0xFFFF00FF;

FILE* g_log = nullptr;

void Log(const char* format, ...)
{
    if (!g_log) return;
    va_list args;
    va_start(args, format);
    vfprintf(g_log, format, args);
    va_end(args);
    fputc('\n', g_log);
    fflush(g_log);
}

void Put(CltImage& image, int32_t x, int32_t y, uint32_t v)
{
    memcpy(image.PixelAddress(x, y), &v, 4);
}

uint32_t Mix(uint32_t a, uint32_t b, int32_t t, int32_t n)
{
    uint32_t out = 0;
    for (int i = 0; i < 24; i += 8)
    {
        int32_t ca = int32_t((a >> i) & 0xFF), cb = int32_t((b >> i) & 0xFF);
        out |= uint32_t(ca + (cb - ca) * t / n) << i;
    }
    return out;
}

// The pictures, drawn in code: a dark vertical gradient, a caption strip, two keyed title
// buttons (a bar and a cross on a rounded plate) and three button faces with soft edges.
struct Skin
{
    CltImageRef background, caption, minimise, close;
    CltImage faces[3];

    bool Make()
    {
        if (!background.Create(kWidth, kHeight, OriginTopLeft) ||
            !caption.Create(kWidth, 30, OriginTopLeft) || !minimise.Create(25, 23, OriginTopLeft) ||
            !close.Create(25, 23, OriginTopLeft))
            return false;
        for (int32_t y = 0; y < kHeight; ++y)
            for (int32_t x = 0; x < kWidth; ++x)
                Put(*background.Image(), x, y, 0xFF000000 | Mix(0x1C2A3A, 0x0A0E14, y, kHeight));
        for (int32_t y = 0; y < 30; ++y)
            for (int32_t x = 0; x < kWidth; ++x)
                Put(*caption.Image(), x, y,
                    0xFF000000 | (y == 29 ? 0x3C78C8 : Mix(0x2E3E52, 0x18202C, y, 30)));
        DrawTitleButton(*minimise.Image(), false);
        DrawTitleButton(*close.Image(), true);
        const uint32_t tops[3] = {0x24344A, 0x3A5A80, 0x16324E};
        for (int i = 0; i < 3; ++i)
        {
            CltImage& f = faces[i];
            if (!f.Create(g_pfArgb32, 200, 47, OriginTopLeft)) return false;
            for (int32_t y = 0; y < 47; ++y)
                for (int32_t x = 0; x < 200; ++x)
                {
                    int32_t edge = std::min(std::min(x, 199 - x), std::min(y, 46 - y));
                    uint32_t alpha = edge >= 3 ? 255 : uint32_t(80 * edge);
                    uint32_t colour = edge == 3 ? 0x5A8CC8 : Mix(tops[i], 0x0C1420, y, 47);
                    Put(f, x, y, (alpha << 24) | colour);
                }
        }
        return true;
    }

    static void DrawTitleButton(CltImage& image, bool cross)
    {
        for (int32_t y = 0; y < 23; ++y)
            for (int32_t x = 0; x < 25; ++x)
            {
                bool plate = x >= 3 && x <= 21 && y >= 3 && y <= 19 &&
                             !((x == 3 || x == 21) && (y == 3 || y == 19));
                bool mark = cross ? (x >= 7 && x <= 17 &&
                                     (x - y == 1 || x - y == 0 || x + y == 23 || x + y == 24) &&
                                     y >= 7 && y <= 17)
                                  : (y >= 14 && y <= 15 && x >= 7 && x <= 17);
                Put(image, x, y, !plate ? kKey : mark ? 0xFFE6EEF8 : 0xFF34506E);
            }
    }
};

class FixtureWindow : public CltWindow
{
  public:
    bool Open(HFONT captionFont, HFONT buttonFont)
    {
        if (!m_Skin.Make()) return false;
        CltString cls;
        if (!clt_RegisterWindowClass(cls, CS_DBLCLKS, LoadCursorA(nullptr, IDC_ARROW), nullptr,
                                     nullptr) ||
            !Create(nullptr, WS_POPUP | WS_SYSMENU, 0, cls.c_str()))
            return false;
        SetWindowTextA(m_hWnd, "Widget fixture");
        m_pRoot = std::make_unique<CltWindowRoot>();
        m_pRoot->Create(nullptr, CltRect(0, 0, kWidth, kHeight), CltWidgetVisible, 0);
        m_pRoot->Attach(m_hWnd);
        auto* panel = static_cast<CltImagePanel*>(m_pRoot->CreateChild(
            g_ImagePanelFactory, CltRect(0, 0, kWidth, kHeight), CltWidgetVisible, 0xE002));
        panel->SetImage(m_Skin.background, 0, 0);
        auto* bar = static_cast<CltCaptionBar*>(panel->CreateChild(
            g_CaptionBarFactory, CltRect(0, 0, 500, 30), CltWidgetVisible, 0xE003));
        bar->SetContent(m_Skin.caption, "Widget fixture", captionFont);
        m_pMinimise = AddTitleButton(bar, 0xE001, m_Skin.minimise, 436);
        m_pClose = AddTitleButton(bar, 0xE000, m_Skin.close, 465);
        const char* labels[3] = {"Install", "Help", "Quit"};
        for (uint32_t i = 0; i < 3; ++i)
        {
            m_pButtons[i] = static_cast<CltTextButton*>(
                panel->CreateChild(g_TextButtonFactory, CltRect(194, 100 + 47 * int32_t(i), 0, 0),
                                   CltWidgetVisible | CltWidgetFocusable, 101 + i));
            m_pButtons[i]->SetContent(buttonFont, labels[i], &m_Skin.faces[0], &m_Skin.faces[2],
                                      &m_Skin.faces[1]);
        }
        m_pButtons[0]->TakeFocus(true);
        HWND desktop = GetDesktopWindow();
        RECT d;
        GetClientRect(desktop, &d);
        MoveWindow(m_hWnd, (d.right - kWidth) >> 1, (d.bottom - kHeight) >> 1, kWidth, kHeight,
                   TRUE);
        return true;
    }

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        const char* input = InputName(message);
        if (input && *input) Log("input %s", input);
        if (m_pRoot) m_pRoot->HandleMessage(message, wParam, lParam);
        if (input) return LogState();
        switch (message)
        {
        case WM_PAINT: return Paint();
        case WM_COMMAND: return Command(LOWORD(wParam));
        case WM_MOVE: return Moved();
        case WM_DESTROY: PostQuitMessage(0); return 0;
        default: return CltWindow::WindowProc(message, wParam, lParam);
        }
    }

    void Close() { m_pRoot.reset(); }

  private:
    CltImageButton* AddTitleButton(CltWidget* bar, uint32_t id, const CltImageRef& image, int32_t x)
    {
        auto* b = static_cast<CltImageButton*>(
            bar->CreateChild(g_ImageButtonFactory, CltRect(), CltWidgetVisible, id));
        b->SetImage(image, CltCell(), CltCell(), CltCell());
        b->MoveTo(x, 0);
        return b;
    }

    LRESULT Paint()
    {
        PAINTSTRUCT ps;
        BeginPaint(m_hWnd, &ps);
        CltRect area(ps.rcPaint.left, ps.rcPaint.top, ps.rcPaint.right, ps.rcPaint.bottom);
        CltCanvas canvas;
        if (m_pRoot && !area.CoversNothing() && canvas.Create(area, ps.hdc))
        {
            m_pRoot->PaintTree(canvas, area);
            BitBlt(ps.hdc, area.left, area.top, area.Width(), area.Height(), canvas.Context(),
                   area.left, area.top, SRCCOPY);
        }
        EndPaint(m_hWnd, &ps);
        if (!m_bReady && area.Width() == kWidth && area.Height() == kHeight)
        {
            m_bReady = true;
            RECT r;
            GetWindowRect(m_hWnd, &r);
            Log("ready %ld %ld %ld %ld", r.left, r.top, r.right, r.bottom);
        }
        return 0;
    }

    LRESULT Command(uint32_t id)
    {
        Log("command %u", id);
        if (id == 0xE000) DestroyWindow(m_hWnd);
        if (id == 0xE001) CloseWindow(m_hWnd);
        return 0;
    }

    LRESULT Moved()
    {
        RECT r;
        if (m_bReady && GetWindowRect(m_hWnd, &r)) Log("window %ld %ld", r.left, r.top);
        return 0;
    }

    // The input messages: a name to log, "" for pointer moves (not logged), else null.
    static const char* InputName(UINT message)
    {
        switch (message)
        {
        case WM_LBUTTONDOWN: return "lbuttondown";
        case WM_LBUTTONUP: return "lbuttonup";
        case WM_KEYDOWN: return "key";
        case WM_MOUSEMOVE: return "";
        default: return nullptr;
        }
    }

    LRESULT LogState()
    {
        if (!m_pRoot) return 0;
        char state[128];
        snprintf(state, sizeof state, "state focus=%u 101=%d 102=%d 103=%d min=%d close=%d",
                 m_pRoot->FocusId(), m_pButtons[0]->State(), m_pButtons[1]->State(),
                 m_pButtons[2]->State(), m_pMinimise->State(), m_pClose->State());
        if (m_strState != state)
        {
            m_strState = state;
            Log("%s", state);
        }
        return 0;
    }

    Skin m_Skin;
    std::unique_ptr<CltWindowRoot> m_pRoot;
    CltTextButton* m_pButtons[3] = {};
    CltImageButton* m_pMinimise = nullptr;
    CltImageButton* m_pClose = nullptr;
    std::string m_strState;
    bool m_bReady = false;
};

class FixtureApp : public CltApp
{
  public:
    int Init() override
    {
        if (g_Env.Has("LOG", 1)) g_log = fopen(g_Env["LOG"].c_str(), "w");
        HFONT captionFont = MakeWidgetFont("Arial Bold", -15),
              buttonFont = MakeWidgetFont("Arial", -30);
        int result = 1;
        {
            FixtureWindow window;
            if (window.Open(captionFont, buttonFont))
            {
                MSG msg;
                while (GetMessageA(&msg, nullptr, 0, 0))
                {
                    TranslateMessage(&msg);
                    DispatchMessageA(&msg);
                }
                result = 0;
            }
            window.Close();
        }
        DeleteObject(captionFont);
        DeleteObject(buttonFont);
        if (g_log) fclose(g_log);
        return result;
    }
};

FixtureApp s_app;
} // namespace
