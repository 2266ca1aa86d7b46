// Message boxes of any process: found, read (title, text, buttons, default button, icon,
// task-modality) and answered from outside, as a user would.
#include "harness/wine_Harness.h"

#include <algorithm>
#include <cstring>

namespace harness
{
namespace
{
std::string WindowText(HWND window)
{
    char buffer[8192] = {};
    DWORD_PTR copied = 0;
    if (!SendMessageTimeoutA(window, WM_GETTEXT, sizeof buffer, reinterpret_cast<LPARAM>(buffer),
                             SMTO_ABORTIFHUNG, 5000, &copied))
        return std::string();
    return std::string(buffer, copied);
}

BOOL CALLBACK StopAtMatch(HWND window, LPARAM param)
{
    auto* search = reinterpret_cast<std::pair<const std::function<bool(HWND)>*, HWND>*>(param);
    if (!(*search->first)(window)) return TRUE;
    search->second = window;
    return FALSE;
}

BOOL CALLBACK CollectButton(HWND child, LPARAM param)
{
    auto* box = reinterpret_cast<std::vector<std::pair<int, HWND>>*>(param);
    if (IsWindowVisible(child) && _stricmp(ClassOf(child).c_str(), "Button") == 0)
        box->emplace_back(GetDlgCtrlID(child), child);
    return TRUE;
}

// The system icons a box may show: their resource, their name and their style bit.
struct KnownIcon
{
    LPCSTR id;
    const char* name;
    UINT style;
};
const KnownIcon kKnownIcons[] = {{IDI_HAND, "hand", MB_ICONHAND},
                                 {IDI_QUESTION, "question", MB_ICONQUESTION},
                                 {IDI_EXCLAMATION, "exclamation", MB_ICONEXCLAMATION},
                                 {IDI_ASTERISK, "asterisk", MB_ICONASTERISK}};

// The pixels (0x00RRGGBB) of a w x h drawing made by draw on a memory bitmap.
template <typename Draw> std::vector<DWORD> Pixels(int w, int h, Draw draw)
{
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, w, h);
    HGDIOBJ old = SelectObject(dc, bitmap);
    draw(dc, screen);
    SelectObject(dc, old);
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), w, -h, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    std::vector<DWORD> pixels(size_t(w) * h);
    GetDIBits(dc, bitmap, 0, UINT(h), pixels.data(), &info, DIB_RGB_COLORS);
    for (DWORD& p : pixels)
        p &= 0xFFFFFF;
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return pixels;
}

// Identifies the icon that a control shows on the screen: its pixels are compared with
// each system icon drawn on the control's background (its top-left pixel, which an icon
// leaves transparent). Retries while the box is still being painted.
std::string IconOnScreen(HWND control)
{
    RECT client;
    GetClientRect(control, &client);
    POINT origin = {0, 0};
    ClientToScreen(control, &origin);
    int w = client.right, h = client.bottom;
    if (w <= 0 || h <= 0) return "other";
    for (int attempt = 0; attempt < 40; ++attempt)
    {
        std::vector<DWORD> shown =
            Pixels(w, h,
                   [&](HDC dc, HDC screen)
                   { BitBlt(dc, 0, 0, w, h, screen, origin.x, origin.y, SRCCOPY); });
        DWORD background = shown[0];
        for (const KnownIcon& k : kKnownIcons)
        {
            std::vector<DWORD> drawn = Pixels(
                w, h,
                [&](HDC dc, HDC)
                {
                    HBRUSH brush = CreateSolidBrush(
                        RGB(GetBValue(background), GetGValue(background), GetRValue(background)));
                    RECT all = {0, 0, w, h};
                    FillRect(dc, &all, brush);
                    DeleteObject(brush);
                    DrawIcon(dc, 0, 0, LoadIconA(nullptr, k.id));
                });
            if (drawn == shown) return k.name;
        }
        Sleep(50);
    }
    return "other";
}

// The system icon that a box shows, told by its pixels on the screen (under Wine icon
// handles differ from process to process).
std::string IconOf(HWND box)
{
    HWND control = GetDlgItem(box, 0x0440); // the message box's icon control
    if (!control || !IsWindowVisible(control)) return "";
    DWORD_PTR icon = 0;
    SendMessageTimeoutA(control, STM_GETICON, 0, 0, SMTO_ABORTIFHUNG, 5000, &icon);
    return icon ? IconOnScreen(control) : "";
}

} // namespace

MessageBoxRecord ReadBox(HWND box)
{
    MessageBoxRecord record;
    record.title = WindowText(box);
    record.icon = IconOf(box);
    HWND owner = GetWindow(box, GW_OWNER);
    record.owner = owner ? ClassOf(owner) : "none";
    if (HWND text = GetDlgItem(box, 0xFFFF)) record.text = WindowText(text);
    std::vector<std::pair<int, HWND>> buttons;
    EnumChildWindows(box, CollectButton, reinterpret_cast<LPARAM>(&buttons));
    std::sort(buttons.begin(), buttons.end());
    for (const auto& [id, window] : buttons)
    {
        record.buttons.push_back(id);
        // The default push button carries BS_DEFPUSHBUTTON (Wine's boxes do not answer
        // DM_GETDEFID as dialogs do).
        if ((GetWindowLongA(window, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON)
            record.defaultButton = id;
    }
    return record;
}

// Clicks the button like a user: the button receives BM_CLICK in its own thread.
void Click(HWND box, int id)
{
    HWND button = GetDlgItem(box, id);
    if (button)
        PostMessageA(button, BM_CLICK, 0, 0);
    else
        PostMessageA(box, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0);
}

void AnswerBoxes(DWORD processId, BoxScript& script)
{
    auto ours = [processId](HWND window)
    {
        DWORD pid = 0;
        GetWindowThreadProcessId(window, &pid);
        return pid == processId && IsWindowVisible(window);
    };
    FindTopLevelWindow(
        [&](HWND window)
        {
            if (ours(window) && ClassOf(window).rfind("CltWin:", 0) == 0 &&
                script.closed.insert(window).second)
                PostMessageA(window, WM_CLOSE, 0, 0);
            return false; // every window
        });
    // A dialog is shown once it has answered WM_INITDIALOG, where a message box sets its text
    // and keeps only its own buttons.
    HWND box = FindTopLevelWindow(
        [&](HWND window)
        { return ours(window) && ClassOf(window) == "#32770" && !script.seen.count(window); });
    if (!box) return;
    script.seen.insert(box);
    MessageBoxRecord record = ReadBox(box);
    if (script.next < script.answers.size())
        record.answer = script.answers[script.next++];
    else
    {
        record.scripted = false;
        record.answer = record.buttons.empty() ? IDCANCEL : record.buttons.back();
    }
    if (script.onBox) script.onBox(record);
    Click(box, record.answer);
}

HWND FindMessageBox(const char* title)
{
    return FindTopLevelWindow(
        [title](HWND window) {
            return IsWindowVisible(window) && ClassOf(window) == "#32770" &&
                   WindowText(window) == title;
        });
}

std::string ClassOf(HWND window)
{
    char name[256] = {};
    GetClassNameA(window, name, sizeof name);
    return name;
}

HWND FindTopLevelWindow(const std::function<bool(HWND)>& matches)
{
    std::pair<const std::function<bool(HWND)>*, HWND> search{&matches, nullptr};
    EnumWindows(StopAtMatch, reinterpret_cast<LPARAM>(&search));
    return search.second;
}

UINT StyleOf(const MessageBoxRecord& box)
{
    // The button sets in the order the box shows them, by their style value.
    static const std::vector<int> kTypes[] = {
        {IDOK},        {IDOK, IDCANCEL},   {IDABORT, IDRETRY, IDIGNORE}, {IDYES, IDNO, IDCANCEL},
        {IDYES, IDNO}, {IDRETRY, IDCANCEL}};
    UINT style = 0xF; // no known button set
    for (UINT type = 0; type < 6; ++type)
    {
        std::vector<int> sorted = kTypes[type];
        std::sort(sorted.begin(), sorted.end());
        if (sorted != box.buttons) continue;
        style = type;
        for (size_t i = 0; i < kTypes[type].size(); ++i)
            if (kTypes[type][i] == box.defaultButton) style |= UINT(i) << 8;
    }
    for (const KnownIcon& k : kKnownIcons)
        if (box.icon == k.name) style |= k.style;
    return style;
}

HWND FindFrameworkWindow(const char* text)
{
    if (strncmp(text, "class=", 6) == 0) return FindWindowA(text + 6, nullptr);
    // GetWindowTextA reads another process's window text without asking its thread, which
    // may be waiting for a program it started.
    return FindTopLevelWindow(
        [text](HWND window)
        {
            char caption[256] = {};
            GetWindowTextA(window, caption, sizeof caption);
            return ClassOf(window).rfind("CltWin:", 0) == 0 && strcmp(caption, text) == 0;
        });
}

} // namespace harness
