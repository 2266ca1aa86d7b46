// The window base and the widgets' drawing against the real system: class names and
// message routing of CltWindow; text buttons, image buttons and the caption bar painted
// into a canvas and compared byte for byte with values computed from the formulas.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "FrameWork/_cult/Source/clt_CaptionBar.h"
#include "FrameWork/_cult/Source/clt_Canvas.h"
#include "FrameWork/_cult/Source/clt_ImageButton.h"
#include "FrameWork/_cult/Source/clt_ImagePanel.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_TextButton.h"
#include "FrameWork/_cult/Source/clt_Window.h"
#include "FrameWork/_cult/Source/clt_WindowRoot.h"
#include "support/test_Picture.h"

namespace
{
const uint32_t V = CltWidgetVisible, F = CltWidgetFocusable;

// A font as the launcher's window makes its caption and button fonts.
HFONT MakeWidgetFont(const char* face, int height)
{
    return CreateFontA(height, 0, 0, 0, FW_NORMAL, 0, 0, 0, DEFAULT_CHARSET, 0, 0,
                       ANTIALIASED_QUALITY, 0, face);
}

HINSTANCE Instance()
{
    HINSTANCE instance = GetModuleHandleA(nullptr);
    clt_GetState()->m_hInstance = instance;
    return instance;
}

// ---- pixels ----------------------------------------------------------------------------

uint32_t Pixel(const CltImage& image, int32_t x, int32_t y)
{
    uint32_t v;
    memcpy(&v, image.PixelAddress(x, y), 4);
    return v;
}

void SetPixel32(CltImage& image, int32_t x, int32_t y, uint32_t v)
{
    memcpy(image.PixelAddress(x, y), &v, 4);
}

// A state image: a colour ramp whose alpha runs from 0 at the left to 255 at the right.
void MakeStateImage(CltImage& image, uint32_t base)
{
    ASSERT_TRUE(image.Create(g_pfArgb32, 200, 47, OriginTopLeft));
    for (int32_t y = 0; y < 47; ++y)
        for (int32_t x = 0; x < 200; ++x)
        {
            uint32_t alpha = uint32_t(x * 255 / 199);
            SetPixel32(image, x, y, (alpha << 24) | ((base + uint32_t(y * 3)) & 0xFFFFFF));
        }
}

uint8_t Channel(uint32_t v, int i)
{
    return uint8_t(v >> (8 * i));
}

constexpr uint32_t kBackground = 0x203040;

// A root without a window, a background panel of one colour, and the paint of a part of it.
class PaintedTree : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        Instance();
        root.Create(nullptr, CltRect(0, 0, 500, 400), V, 0);
        ASSERT_TRUE(background.Create(500, 400, OriginTopLeft));
        CltDibImage& image = *background.Image();
        for (int32_t y = 0; y < 400; ++y)
            for (int32_t x = 0; x < 500; ++x)
                SetPixel32(image, x, y, 0xFF000000 | kBackground);
        panel = static_cast<CltImagePanel*>(
            root.CreateChild(g_ImagePanelFactory, CltRect(0, 0, 500, 400), V, 0xE002));
        ASSERT_NE(panel, nullptr);
        panel->SetImage(background, 0, 0);
    }
    // Paints the area into a fresh canvas.
    void Paint(const CltRect& area)
    {
        canvas = std::make_unique<CltCanvas>();
        HDC screen = GetDC(nullptr);
        ASSERT_TRUE(canvas->Begin(area, screen));
        ReleaseDC(nullptr, screen);
        root.PaintTree(*canvas, area);
        GdiFlush();
    }
    // The canvas pixel at window coordinates (x, y).
    uint32_t At(int32_t x, int32_t y) const
    {
        const CltRect& o = canvas->Origin();
        return Pixel(*canvas->Pixels(), x - o.left, y - o.top) & 0xFFFFFF;
    }
    CltRootWidget root;
    CltImageRef background;
    CltImagePanel* panel = nullptr;
    std::unique_ptr<CltCanvas> canvas;
};

TEST_F(PaintedTree, TextButtonStatesFollowTheBlendFormulas)
{
    HFONT font = MakeWidgetFont("Arial", -30);
    CltImage normal, pressed, highlighted;
    MakeStateImage(normal, 0x102030);
    MakeStateImage(pressed, 0x603010);
    MakeStateImage(highlighted, 0x305060);
    auto* button = static_cast<CltTextButton*>(
        panel->CreateChild(g_TextButtonFactory, CltRect(194, 200, 0, 0), V | F, 101));
    ASSERT_NE(button, nullptr);
    button->SetContent(font, "Install", &normal, &pressed, &highlighted);
    EXPECT_EQ(button->Rect(), CltRect(194, 200, 394, 247));
    const CltImage& mask = button->TextMask();
    ASSERT_EQ(mask.m_nWidth, 180);
    ASSERT_EQ(mask.m_nHeight, 27);
    int covered = 0;
    for (int32_t y = 0; y < 27; ++y)
        for (int32_t x = 0; x < 180; ++x)
            covered += *mask.PixelAddress(x, y) != 0;
    EXPECT_GT(covered, 150); // the label was drawn

    struct
    {
        const char* name;
        const CltImage* image;
        uint32_t colour;
    } states[] = {
        {"text_normal.bmp", &normal, 0x3C78C8},
        {"text_highlighted.bmp", &highlighted, 0xAAAAAA},
        {"text_pressed.bmp", &pressed, 0xFFFFFF},
    };
    // Canvas areas that do not start at the window's origin: the blits must subtract it.
    const CltRect area(150, 190, 450, 260);
    for (int s = 0; s < 3; ++s)
    {
        if (s == 1) root.SetFocusWidget(button);
        if (s == 2) button->OnLButtonDown(0, 200, 210);
        ASSERT_EQ(button->State(), s + 1);
        Paint(area);
        for (int32_t y = area.top; y < area.bottom; ++y)
            for (int32_t x = area.left; x < area.right; ++x)
            {
                uint32_t expected = kBackground;
                int32_t bx = x - 194, by = y - 200;
                if (bx >= 0 && bx < 200 && by >= 0 && by < 47)
                {
                    uint32_t src = Pixel(*states[s].image, bx, by), a = src >> 24, out = 0;
                    for (int i = 0; i < 3; ++i)
                    {
                        uint32_t c =
                            a ? (Channel(src, i) * a + Channel(expected, i) * (255 - a)) >> 8
                              : Channel(expected, i);
                        out |= c << (8 * i);
                    }
                    expected = out;
                    int32_t mx = bx - 11, my = by - 8; // label at (10 + 1, 10 - 2)
                    if (mx >= 0 && mx < 180 && my >= 0 && my < 27)
                        if (uint32_t m = *mask.PixelAddress(mx, my))
                        {
                            out = 0;
                            for (int i = 0; i < 3; ++i)
                            {
                                uint32_t tint = (Channel(states[s].colour, i) * 255) >> 8;
                                out |= ((Channel(expected, i) * (255 - m) + tint * m) >> 8)
                                       << (8 * i);
                            }
                            expected = out;
                        }
                }
                ASSERT_EQ(At(x, y), expected) << states[s].name << " at " << x << "," << y;
            }
    }
    root.RemoveChild(panel);
    DeleteObject(font);
}

TEST_F(PaintedTree, CaptionTitleStandsAt25And6)
{
    HFONT font = MakeWidgetFont("Arial Bold", -15);
    CltImageRef caption;
    ASSERT_TRUE(caption.Create(500, 30, OriginTopLeft));
    for (int32_t y = 0; y < 30; ++y)
        for (int32_t x = 0; x < 500; ++x)
            SetPixel32(*caption.Image(), x, y, 0xFF000000 | uint32_t(0x101010 * (y / 3)));
    auto* bar = static_cast<CltCaptionBar*>(
        panel->CreateChild(g_CaptionBarFactory, CltRect(0, 0, 500, 30), V, 0xE003));
    ASSERT_NE(bar, nullptr);
    const char* title = "Tarn - Install";
    bar->SetContent(caption, title, font);
    Paint(CltRect(0, 0, 500, 40));

    // The same text put on the same picture with TextOut at (25, 6).
    CltImageRef reference;
    ASSERT_TRUE(reference.Create(500, 30, OriginTopLeft));
    BitBlt(reference.Context(), 0, 0, 500, 30, caption.Context(), 0, 0, SRCCOPY);
    HGDIOBJ old = SelectObject(reference.Context(), font);
    SetBkMode(reference.Context(), TRANSPARENT);
    SetTextColor(reference.Context(), RGB(60, 120, 200));
    TextOutA(reference.Context(), 25, 6, title, int(strlen(title)));
    SelectObject(reference.Context(), old);
    GdiFlush();
    int changed = 0; // the pixels the title covers: it was drawn
    for (int32_t y = 0; y < 40; ++y)
        for (int32_t x = 0; x < 500; ++x)
        {
            uint32_t expected = y < 30 ? Pixel(*reference.Image(), x, y) & 0xFFFFFF : kBackground;
            ASSERT_EQ(At(x, y), expected) << x << "," << y;
            changed += y < 30 && expected != (Pixel(*caption.Image(), x, y) & 0xFFFFFF);
        }
    EXPECT_GT(changed, 100);

    // An empty title draws the picture alone.
    bar->SetContent(caption, "", font);
    Paint(CltRect(0, 0, 500, 30));
    for (int32_t x = 0; x < 500; ++x)
        ASSERT_EQ(At(x, 12), Pixel(*caption.Image(), x, 12) & 0xFFFFFF) << x;
    DeleteObject(font);
}

class TreeWindow : public CltWindow
{
  public:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (root) root->HandleMessage(message, wParam, lParam);
        return CltWindow::WindowProc(message, wParam, lParam);
    }
    CltWindowRoot* root = nullptr;
};

class TickCounter : public CltWidget
{
  public:
    void OnTick() override
    {
        LARGE_INTEGER now;
        QueryPerformanceCounter(&now);
        times.push_back(now.QuadPart);
    }
    std::vector<LONGLONG> times;
};

TEST(CltWindowRoot, TicksEveryFiftyMillisecondsWhileAsked)
{
    Instance();
    CltString cls;
    ASSERT_TRUE(clt_RegisterWindowClass(cls, 0, nullptr, nullptr, nullptr));
    TreeWindow window;
    ASSERT_TRUE(window.Create(nullptr, WS_POPUP, 0, cls.c_str()));
    MoveWindow(window.Handle(), 0, 0, 200, 100, TRUE);
    CltWindowRoot root;
    root.Create(nullptr, CltRect(0, 0, 200, 100), V, 0);
    root.Attach(window.Handle());
    window.root = &root;
    CltWidgetFactoryOf<TickCounter> factory;
    auto* counter =
        static_cast<TickCounter*>(root.CreateChild(factory, CltRect(0, 0, 10, 10), V, 0));
    EXPECT_FALSE(KillTimer(window.Handle(), 1)); // nobody asks for ticks: no timer
    counter->WantTicks(true);

    DWORD start = GetTickCount();
    while (counter->times.size() < 11 && GetTickCount() - start < 5000)
    {
        MSG msg;
        if (GetMessageA(&msg, nullptr, 0, 0)) DispatchMessageA(&msg);
    }
    ASSERT_EQ(counter->times.size(), 11u);
    // The middle of ten intervals: a tick held up now and then moves it little.
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    std::vector<double> ms;
    for (size_t i = 1; i < counter->times.size(); ++i)
        ms.push_back(1000.0 * double(counter->times[i] - counter->times[i - 1]) /
                     double(frequency.QuadPart));
    std::sort(ms.begin(), ms.end());
    EXPECT_GT(ms[5], 40.0);
    EXPECT_LT(ms[5], 62.0);
    counter->WantTicks(false);
    EXPECT_FALSE(KillTimer(window.Handle(), 1)); // stopped with the last one asking

    window.root = nullptr;
    DestroyWindow(window.Handle());
}

// ---- skin images -----------------------------------------------------------------------

// Skin files as the window loads them (through the readers into a 32-bit DIB section),
// and as GDI then shows them: every pixel as in the picture the files were made from.
TEST(SkinImages, ShowAsTheirFilesMeanThemWhateverTheStorageOrder)
{
    test_picture::Picture pic = test_picture::ReadPam();
    ASSERT_EQ(pic.rgba.size(), size_t(pic.w) * pic.h * 4) << "picture.pam missing";
    for (const test_picture::File& file : test_picture::Files())
    {
        if (file.bits == 8) continue; // skins are of 24 and 32 bits
        SCOPED_TRACE(file.name);
        CltImageRef image;
        ASSERT_TRUE(image.LoadFile((std::string(CLT_TEST_IMAGES) + "/" + file.name).c_str()));
        ASSERT_EQ(image.Width(), pic.w);
        ASSERT_EQ(image.Height(), pic.h);
        // What GDI shows: the image copied by BitBlt into a top-down section.
        CltImageRef shown;
        ASSERT_TRUE(shown.Create(pic.w, pic.h, OriginTopLeft));
        BitBlt(shown.Context(), 0, 0, pic.w, pic.h, image.Context(), 0, 0, SRCCOPY);
        GdiFlush();
        bool alpha = file.bits == 32;
        for (int32_t y = 0; y < pic.h; ++y)
            for (int32_t x = 0; x < pic.w; ++x)
            {
                const uint8_t* want = pic.At(x, y);
                uint32_t expected = uint32_t(want[0]) << 16 | uint32_t(want[1]) << 8 | want[2];
                if (alpha) expected |= uint32_t(want[3]) << 24;
                uint32_t got = Pixel(*shown.Image(), x, y) & (alpha ? 0xFFFFFFFF : 0xFFFFFF);
                ASSERT_EQ(got, expected) << x << "," << y;
            }
    }
}
} // namespace
