// launcher_Bench: the launcher measured as a player meets it, from outside, side by side
// with bare_Window (a bare Win32 program that opens a window of the same size and paints
// one bitmap with one BitBlt):
//   start to first paint: from CreateProcess until the background shows on the screen (on
//     a band of rows across the middle of the window);
//   a page change: from the release of a click on INSTALL's Help until HELP is wholly on
//     the screen, against bare_Window's click, which repaints its window with one BitBlt;
//   where the time goes: the parts of the launcher's work that a bare program does not
//     have (before its first paint: setup library, skin files, region, fonts; as the window
//     appears, after that paint: the opening sound; at a page change: the click sound; and
//     the new page's labels, which the launcher draws while it waits for input before the
//     page change), each timed in a fresh process.
// A figure is the median over the repetitions with the lowest and highest value. The two
// programs run one after the other, in alternating order, and a ratio is taken within each
// repetition, so that a slow moment of the machine touches both sides of one ratio.
//
// (The idle CPU figure is taken by tools/run-benchmark from outside Wine: Wine's processor
// times of another process are not the process's.)
//
// Usage: launcher_Bench.exe PRODUCT_FOLDER BARE_WINDOW.exe [REPETITIONS]
//        launcher_Bench.exe -part NAME DATA_FOLDER
// The second form times one part in this process and returns the microseconds as its exit
// code (a fresh process per measurement: fonts, libraries and caches start cold, as they
// do for the launcher).
#include "FrameWork/_cult/Source/clt_ImageFile.h"
#include "FrameWork/_cult/Source/clt_ImageRef.h"
#include "FrameWork/_cult/Source/clt_RegionData.h"
#include "FrameWork/_cult/Source/clt_SystemEntries.h"
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "FrameWork/_cult/Source/clt_TextButton.h"

#include <windows.h>

#include <mmsystem.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace
{
constexpr DWORD kWaitMs = 10000; // longest wait for any one thing to show
// Where the launcher's page buttons stand (window coordinates): button k at (300, 220 + 47k).
constexpr int kButtonX = 300, kButtonY = 220, kButtonStep = 47;
constexpr int kHelpButton = 1, kBackButton = 3; // INSTALL's Help, HELP's Back

double Now()
{
    static LARGE_INTEGER frequency = []
    {
        LARGE_INTEGER f;
        QueryPerformanceFrequency(&f);
        return f;
    }();
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    return 1000.0 * double(now.QuadPart) / double(frequency.QuadPart);
}

// Values of one figure over the repetitions.
struct Series
{
    std::vector<double> values;
    void Add(double v) { values.push_back(v); }
    double Median() const
    {
        std::vector<double> v = values;
        std::sort(v.begin(), v.end());
        size_t n = v.size();
        return n == 0 ? 0 : n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
    }
    // "312 (300 to 340)" with the given decimals.
    std::string Text(int decimals) const
    {
        if (values.empty()) return "-";
        auto [low, high] = std::minmax_element(values.begin(), values.end());
        char text[96];
        snprintf(text, sizeof text, "%.*f (%.*f to %.*f)", decimals, Median(), decimals, *low,
                 decimals, *high);
        return text;
    }
};

Series Ratios(const Series& ours, const Series& theirs)
{
    Series r;
    for (size_t i = 0; i < ours.values.size() && i < theirs.values.size(); ++i)
        r.Add(ours.values[i] / theirs.values[i]);
    return r;
}

// A top-down 32-bit DIB's description.
BITMAPINFO TopDown32(int width, int height)
{
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
}

// The screen under a rectangle, read back as 0x00RRGGBB pixels.
class ScreenArea
{
  public:
    explicit ScreenArea(const RECT& r)
        : m_rect(r), m_width(r.right - r.left), m_height(r.bottom - r.top)
    {
        BITMAPINFO info = TopDown32(m_width, m_height);
        m_screen = GetDC(nullptr);
        m_dc = CreateCompatibleDC(m_screen);
        void* bits = nullptr;
        m_bitmap = CreateDIBSection(m_dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        m_bits = static_cast<uint32_t*>(bits);
        SelectObject(m_dc, m_bitmap);
    }
    ~ScreenArea()
    {
        DeleteDC(m_dc);
        DeleteObject(m_bitmap);
        ReleaseDC(nullptr, m_screen);
    }
    // Reads the rows from y0 up to y1 (all by default) into the same places of the copy.
    void Grab(int y0 = 0, int y1 = -1)
    {
        if (y1 < 0) y1 = m_height;
        BitBlt(m_dc, 0, y0, m_width, y1 - y0, m_screen, m_rect.left, m_rect.top + y0, SRCCOPY);
        GdiFlush();
    }
    uint32_t At(int x, int y) const { return m_bits[y * m_width + x] & 0xFFFFFF; }
    std::vector<uint32_t> Pixels() const
    {
        std::vector<uint32_t> p(m_bits, m_bits + m_width * m_height);
        for (uint32_t& v : p)
            v &= 0xFFFFFF;
        return p;
    }
    bool Shows(const std::vector<uint32_t>& picture) const
    {
        for (size_t i = 0; i < picture.size(); ++i)
            if ((m_bits[i] & 0xFFFFFF) != picture[i]) return false;
        return true;
    }
    // Waits until two reads a quarter of a second apart agree.
    void Settle()
    {
        Grab();
        for (double start = Now(); Now() - start < kWaitMs;)
        {
            std::vector<uint32_t> before = Pixels();
            Sleep(250);
            Grab();
            if (Shows(before)) return;
        }
    }
    // Milliseconds from start until the predicate holds on a fresh read of the rows from y0
    // up to y1; -1 on time-out.
    double Until(double start, const std::function<bool()>& holds, int y0 = 0, int y1 = -1)
    {
        while (Now() - start < kWaitMs)
        {
            Grab(y0, y1);
            if (holds()) return Now() - start;
        }
        return -1;
    }
    const RECT& Rect() const { return m_rect; }
    int Width() const { return m_width; }
    int Height() const { return m_height; }

  private:
    RECT m_rect;
    int m_width, m_height;
    HDC m_screen = nullptr, m_dc = nullptr;
    HBITMAP m_bitmap = nullptr;
    uint32_t* m_bits = nullptr;
};

// A bitmap file's pixels as 0x00RRGGBB, top row first; empty when it cannot be read.
std::vector<uint32_t> ReadPicture(const std::string& path, int& width, int& height)
{
    HBITMAP picture = static_cast<HBITMAP>(LoadImageA(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0,
                                                      LR_LOADFROMFILE | LR_CREATEDIBSECTION));
    BITMAP size;
    if (!picture || !GetObjectA(picture, sizeof size, &size)) return {};
    width = size.bmWidth, height = size.bmHeight;
    std::vector<uint32_t> pixels(size_t(width) * height);
    BITMAPINFO info = TopDown32(width, height);
    HDC screen = GetDC(nullptr);
    GetDIBits(screen, picture, 0, height, pixels.data(), &info, DIB_RGB_COLORS);
    ReleaseDC(nullptr, screen);
    DeleteObject(picture);
    for (uint32_t& v : pixels)
        v &= 0xFFFFFF;
    return pixels;
}

class Program
{
  public:
    ~Program() { Close(); }
    bool Start(const std::string& exe, const std::string& arguments, const std::string& folder)
    {
        std::string line = "\"" + exe + "\"" + (arguments.empty() ? "" : " " + arguments);
        STARTUPINFOA si = {};
        si.cb = sizeof si;
        return CreateProcessA(exe.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                              folder.empty() ? nullptr : folder.c_str(), &si, &m_info) != FALSE;
    }
    HANDLE Process() const { return m_info.hProcess; }
    // Closes the program's window as its user would, and waits for its end.
    void Close()
    {
        if (!m_info.hProcess) return;
        Search search = {m_info.dwProcessId, nullptr};
        EnumWindows(FindVisible, reinterpret_cast<LPARAM>(&search));
        if (search.found) PostMessageA(search.found, WM_CLOSE, 0, 0);
        if (WaitForSingleObject(m_info.hProcess, kWaitMs) != WAIT_OBJECT_0)
            TerminateProcess(m_info.hProcess, 1);
        CloseHandle(m_info.hThread);
        CloseHandle(m_info.hProcess);
        m_info = {};
    }

  private:
    struct Search
    {
        DWORD pid;
        HWND found;
    };
    static BOOL CALLBACK FindVisible(HWND w, LPARAM p)
    {
        auto* s = reinterpret_cast<Search*>(p);
        DWORD pid = 0;
        GetWindowThreadProcessId(w, &pid);
        if (pid == s->pid && IsWindowVisible(w)) s->found = w;
        return s->found ? FALSE : TRUE;
    }
    PROCESS_INFORMATION m_info = {};
};

void PointerTo(int x, int y)
{
    INPUT in = {};
    in.type = INPUT_MOUSE;
    in.mi.dx = LONG(x * 65536.0 / GetSystemMetrics(SM_CXSCREEN) + 0.5);
    in.mi.dy = LONG(y * 65536.0 / GetSystemMetrics(SM_CYSCREEN) + 0.5);
    in.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    SendInput(1, &in, sizeof in);
}

void LeftButton(bool down)
{
    INPUT in = {};
    in.type = INPUT_MOUSE;
    in.mi.dwFlags = down ? MOUSEEVENTF_LEFTDOWN : MOUSEEVENTF_LEFTUP;
    SendInput(1, &in, sizeof in);
}

// A click at (x, y) whose release is timed until the screen shows picture; with an empty
// picture the settled screen becomes the picture and -1 is returned.
double TimedClick(ScreenArea& area, int x, int y, std::vector<uint32_t>& picture)
{
    PointerTo(x, y);
    area.Settle();
    LeftButton(true);
    area.Settle();
    double start = Now();
    LeftButton(false);
    if (picture.empty())
    {
        area.Settle();
        picture = area.Pixels();
        return -1;
    }
    return area.Until(start, [&] { return area.Shows(picture); });
}

// ---- the parts of the start, one per fresh process -------------------------------------

const char* const kParts[] = {"setup library",
                              "skin files",
                              "region",
                              "fonts",
                              "opening sound",
                              "a page's click sound",
                              "a page's labels (drawn ahead)"};

void TimeSetupLibrary(const std::string& data)
{
    HMODULE library = clt_LoadLibraryByPath((data + "\\VokSetup.dll").c_str());
    if (library) GetProcAddress(library, "VokSetup_GetSetup");
}

void TimeSkinFiles(const std::string& data)
{
    const char* shared[] = {"product.bmp", "active.tga",   "inactive.tga",
                            "close.tga",   "minimize.tga", "ovrclose.tga",
                            "ovrmin.tga",  "selclose.tga", "selmin.tga"};
    for (const char* name : shared)
    {
        CltImageRef image;
        image.LoadFile((data + "\\" + name).c_str());
    }
    for (const char* name : {"unselect.tga", "pressed.tga", "focused.tga"})
    {
        CltImage image;
        LoadImageFile(CLTID_FileStream, image, (data + "\\" + name).c_str());
    }
}

// What every part finds made, as a bare program has it before it paints: a window (the
// first makes the process's connection to the display) and a drawing context.
HWND g_window = nullptr;

void TimeRegion(const std::string& data)
{
    CltMemoryBlock* file = ReadWholeFile(CLTID_FileStream, (data + "\\product.rgn").c_str());
    if (!file) return;
    const auto* bytes = static_cast<const uint8_t*>(file->Lock());
    uint32_t size = clt_GetRegionDataSize(bytes, file->GetSize() - 2);
    HRGN region =
        size ? ExtCreateRegion(nullptr, size, reinterpret_cast<const RGNDATA*>(bytes)) : nullptr;
    file->Unlock();
    file->Release();
    if (region) SetWindowRgn(g_window, region, TRUE);
}

// The two fonts made as the launcher makes them, and each drawn once, which is when the
// system finds and reads them.
void TimeFonts(const std::string&)
{
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, 200, 40);
    SelectObject(dc, bitmap);
    for (auto [face, height] : {std::pair{"Arial Bold", -15}, std::pair{"Arial", -30}})
    {
        LOGFONTA font = {};
        font.lfHeight = height;
        font.lfWeight = FW_NORMAL;
        font.lfCharSet = DEFAULT_CHARSET;
        font.lfQuality = ANTIALIASED_QUALITY;
        lstrcpynA(font.lfFaceName, face, LF_FACESIZE);
        HFONT made = CreateFontIndirectA(&font);
        HGDIOBJ old = SelectObject(dc, made);
        TextOutA(dc, 0, 0, "Install", 7);
        SelectObject(dc, old);
        DeleteObject(made);
    }
    DeleteDC(dc);
    DeleteObject(bitmap);
    ReleaseDC(nullptr, screen);
}

// The first sound: the sound library and the system's sound device start.
void TimeOpeningSound(const std::string& data)
{
    clt_PlaySound((data + "\\OPEN.wav").c_str(), nullptr, SND_FILENAME | SND_ASYNC);
}

// A page button's click as the launcher plays it: what plays is stopped, the click starts.
void TimeClickSound(const std::string& data)
{
    clt_PlaySound(nullptr, nullptr, SND_PURGE);
    clt_PlaySound((data + "\\CLICK.wav").c_str(), nullptr, SND_FILENAME | SND_ASYNC);
}

// The labels of a page of four buttons, drawn as the page's buttons draw them (the fonts
// found and read before, as they are by the time a page changes).
HFONT g_buttonFont = nullptr;
void TimePageLabels(const std::string& data)
{
    CltImage face;
    LoadImageFile(CLTID_FileStream, face, (data + "\\unselect.tga").c_str());
    CltRootWidget root;
    root.Create(nullptr, CltRect(0, 0, 500, 470), CltWidgetVisible, 0);
    for (const char* label : {"Readme", "Troubleshooting", "System check", "Back"})
        static_cast<CltTextButton*>(
            root.CreateChild(g_TextButtonFactory, CltRect(194, 200, 0, 0), CltWidgetVisible, 1))
            ->SetContent(g_buttonFont, label, &face, &face, &face);
}

int TimePart(const std::string& name, const std::string& data)
{
    void (*parts[])(const std::string&) = {TimeSetupLibrary, TimeSkinFiles,    TimeRegion,
                                           TimeFonts,        TimeOpeningSound, TimeClickSound,
                                           TimePageLabels};
    g_window = CreateWindowExA(0, "STATIC", "", WS_POPUP, 0, 0, 500, 470, nullptr, nullptr, nullptr,
                               nullptr);
    HDC screen = GetDC(nullptr);
    DeleteDC(CreateCompatibleDC(screen));
    ReleaseDC(nullptr, screen);
    // The click follows the opening sound, which is playing.
    if (name == kParts[5]) TimeOpeningSound(data);
    if (name == kParts[6])
    {
        LOGFONTA font = {};
        font.lfHeight = -30;
        font.lfWeight = FW_NORMAL;
        font.lfQuality = ANTIALIASED_QUALITY;
        lstrcpynA(font.lfFaceName, "Arial", LF_FACESIZE);
        g_buttonFont = CreateFontIndirectA(&font);
        TimeFonts(data);
    }
    for (size_t i = 0; i < sizeof parts / sizeof *parts; ++i)
        if (name == kParts[i])
        {
            double start = Now();
            parts[i](data);
            return int((Now() - start) * 1000);
        }
    return -1;
}

double PartInFreshProcess(const std::string& self, const char* part, const std::string& data)
{
    Program child;
    if (!child.Start(self, "-part \"" + std::string(part) + "\" \"" + data + "\"", "")) return -1;
    WaitForSingleObject(child.Process(), kWaitMs);
    DWORD micro = 0;
    GetExitCodeProcess(child.Process(), &micro);
    return micro < 0x7FFFFFFF ? micro / 1000.0 : -1;
}

// ---- the run ---------------------------------------------------------------------------

struct Bench
{
    std::string product, bare, data, self;
    int repetitions = 7;
    std::vector<uint32_t> background; // product.bmp, where both programs show it
    int width = 0, height = 0;
    RECT window = {};
    // The start is watched on a band of rows across the middle (a window appears in one
    // piece): reading the whole window back as fast as the screen allows would take the
    // processor time that the program being timed needs.
    static constexpr int kBandRows = 60;
    int bandTop = 0;
    std::vector<int> points; // indices in the band where the launcher shows the background
    bool ShowsBackground(const ScreenArea& area) const
    {
        for (int i : points)
            if (area.At(i % width, i / width) != background[i]) return false;
        return true;
    }
    bool ShowsNoneOfIt(const ScreenArea& area) const
    {
        for (int i : points)
            if (area.At(i % width, i / width) == background[i]) return false;
        return true;
    }
    // Start to first paint; the program stays open.
    double FirstPaint(ScreenArea& area, Program& program, bool launcher)
    {
        area.Until(
            Now(), [&] { return ShowsNoneOfIt(area); }, bandTop, bandTop + kBandRows);
        double start = Now();
        bool started = launcher ? program.Start(product + "\\Launcher.exe", "", product)
                                : program.Start(bare, "\"" + data + "\\product.bmp\"", "");
        if (!started) return -1;
        return area.Until(
            start, [&] { return ShowsBackground(area); }, bandTop, bandTop + kBandRows);
    }
};

int Run(Bench& b)
{
    b.background = ReadPicture(b.data + "\\product.bmp", b.width, b.height);
    if (b.background.empty())
    {
        fprintf(stderr, "cannot read %s\\product.bmp\n", b.data.c_str());
        return 1;
    }
    RECT desktop;
    GetClientRect(GetDesktopWindow(), &desktop);
    int left = (desktop.right - b.width) >> 1, top = (desktop.bottom - b.height) >> 1;
    b.window = RECT{left, top, left + b.width, top + b.height};
    ScreenArea area(b.window);

    // A first start of each, not counted: it finds the points where the launcher shows
    // its background uncovered, and warms the system's caches for both.
    b.bandTop = (b.height - Bench::kBandRows) / 2;
    area.Grab();
    std::vector<uint32_t> empty = area.Pixels();
    {
        Program launcher;
        launcher.Start(b.product + "\\Launcher.exe", "", b.product);
        area.Until(Now(), [&] { return !area.Shows(empty); });
        area.Settle();
        for (int y = b.bandTop + 5; y < b.bandTop + Bench::kBandRows; y += 10)
            for (int x = 5; x < b.width; x += 10)
                if (area.At(x, y) == b.background[y * b.width + x] &&
                    empty[y * b.width + x] != b.background[y * b.width + x])
                    b.points.push_back(y * b.width + x);
    }
    if (b.points.size() < 20)
    {
        fprintf(stderr, "the launcher's window shows its background at only %zu points\n",
                b.points.size());
        return 1;
    }
    {
        Program bare;
        b.FirstPaint(area, bare, false);
    }

    Series launcherStart, bareStart, launcherPage, barePage;
    std::vector<uint32_t> help, install, negative, positive;
    for (int rep = 0; rep < b.repetitions; ++rep)
        for (int side = 0; side < 2; ++side)
        {
            bool launcher = (side + rep) % 2 == 0;
            Program program;
            double ms = b.FirstPaint(area, program, launcher);
            if (ms < 0)
            {
                int shown = 0;
                for (int i : b.points)
                    shown += area.At(i % b.width, i / b.width) == b.background[i];
                fprintf(stderr, "%s did not show its background (%d of %zu points)\n",
                        launcher ? "launcher" : "bare", shown, b.points.size());
                return 1;
            }
            (launcher ? launcherStart : bareStart).Add(ms);
            int x = b.window.left + kButtonX, y = b.window.top + kButtonY;
            if (launcher)
            {
                for (int cycle = 0; cycle < 2; ++cycle)
                {
                    double page = TimedClick(area, x, y + kHelpButton * kButtonStep, help);
                    if (page >= 0) launcherPage.Add(page);
                    TimedClick(area, x, y + kBackButton * kButtonStep, install);
                }
            }
            else
            {
                int cx = (b.window.left + b.window.right) / 2;
                int cy = (b.window.top + b.window.bottom) / 2;
                for (int cycle = 0; cycle < 2; ++cycle)
                {
                    double n = TimedClick(area, cx, cy, negative);
                    double p = TimedClick(area, cx, cy, positive);
                    if (n >= 0 && p >= 0) barePage.Add((n + p) / 2);
                }
            }
        }

    Series parts[sizeof kParts / sizeof *kParts];
    for (int rep = 0; rep < b.repetitions; ++rep)
        for (size_t i = 0; i < sizeof kParts / sizeof *kParts; ++i)
            if (double ms = PartInFreshProcess(b.self, kParts[i], b.data); ms >= 0)
                parts[i].Add(ms);

    printf("The launcher under Wine beside a bare program (%d repetitions; median, lowest "
           "to highest):\n",
           b.repetitions);
    printf("  start to first paint   launcher %s ms   bare %s ms\n", launcherStart.Text(0).c_str(),
           bareStart.Text(0).c_str());
    printf("                         ratio %s   (goal: at most 1.2)\n",
           Ratios(launcherStart, bareStart).Text(2).c_str());
    printf("  page change            launcher %s ms   one full-window BitBlt %s ms\n",
           launcherPage.Text(1).c_str(), barePage.Text(1).c_str());
    printf("                         ratio %s   (goal: at most 2)\n",
           Ratios(launcherPage, barePage).Text(2).c_str());
    printf("What the launcher does that the bare program does not (each part in a fresh "
           "process, ms;\n the first four before its first paint, the opening sound as the "
           "window appears,\n the last two at a page change):\n");
    for (size_t i = 0; i < sizeof kParts / sizeof *kParts; ++i)
        printf("  %-22s %s\n", kParts[i], parts[i].Text(1).c_str());
    return launcherStart.values.empty() || launcherPage.values.empty() ? 1 : 0;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc == 4 && !strcmp(argv[1], "-part")) return TimePart(argv[2], argv[3]);
    if (argc < 3)
    {
        fprintf(stderr, "usage: launcher_Bench.exe PRODUCT_FOLDER BARE_WINDOW.exe [REPETITIONS]\n");
        return 2;
    }
    Bench b;
    b.product = argv[1];
    b.bare = argv[2];
    b.data = b.product + "\\Install";
    char self[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, self, MAX_PATH);
    b.self = self;
    if (argc > 3) b.repetitions = std::max(1, atoi(argv[3]));
    return Run(b);
}
