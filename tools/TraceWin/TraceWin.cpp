// TraceWin: a trace viewer. It opens a top-level window of class "TraceWin TRACE Window"
// (or "MfxTraceWindow", or one of each) and shows every text that a program sends it as
// a WM_COPYDATA record whose dwData is "twin". With /out:FILE it also appends one line
// per record to FILE, flushed at once, for tools and tests:
//
//   <window class tag> TAB <dwData, 8 hex digits> TAB <cbData> TAB <text, escaped> LF
//
// The tag is "twin" or "mfx". In the text, backslash, tab, CR, LF and bytes outside
// 0x20-0x7E are written as \\ \t \r \n and \xHH, so each record stays on one line.
//
// Usage: TraceWin.exe [/out:FILE] [/class:twin|mfx|both]
#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace
{
const char kTraceWinClass[] = "TraceWin TRACE Window";
const char kMfxClass[] = "MfxTraceWindow";
constexpr ULONG_PTR kMagic = 0x6E697774;
constexpr int kEditId = 1;

FILE* g_pRecordFile = nullptr;
int g_nOpenWindows = 0;

std::string Escape(const char* data, DWORD size)
{
    std::string out;
    for (DWORD i = 0; i < size; ++i)
    {
        unsigned char c = static_cast<unsigned char>(data[i]);
        char hex[8];
        switch (c)
        {
        case '\\': out += "\\\\"; break;
        case '\t': out += "\\t"; break;
        case '\r': out += "\\r"; break;
        case '\n': out += "\\n"; break;
        default:
            if (c >= 0x20 && c < 0x7F)
                out += static_cast<char>(c);
            else
            {
                snprintf(hex, sizeof hex, "\\x%02X", c);
                out += hex;
            }
        }
    }
    return out;
}

// Shows the text in the window's edit box, turning lone LFs into CR LF line breaks.
void AppendToView(HWND window, const char* data, DWORD size)
{
    std::string text;
    for (DWORD i = 0; i < size; ++i)
    {
        if (data[i] == '\n' && (i == 0 || data[i - 1] != '\r')) text += '\r';
        text += data[i] ? data[i] : ' ';
    }
    HWND edit = GetDlgItem(window, kEditId);
    int end = GetWindowTextLengthA(edit);
    SendMessageA(edit, EM_SETSEL, end, end);
    SendMessageA(edit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(text.c_str()));
}

LRESULT OnCopyData(HWND window, const COPYDATASTRUCT* record)
{
    char className[64] = {};
    GetClassNameA(window, className, sizeof className);
    const char* tag = strcmp(className, kMfxClass) == 0 ? "mfx" : "twin";
    const char* data = static_cast<const char*>(record->lpData);
    DWORD size = data ? record->cbData : 0;
    if (g_pRecordFile)
    {
        fprintf(g_pRecordFile, "%s\t%08lX\t%lu\t%s\n", tag,
                static_cast<unsigned long>(record->dwData),
                static_cast<unsigned long>(record->cbData), Escape(data, size).c_str());
        fflush(g_pRecordFile);
    }
    if (record->dwData == kMagic) AppendToView(window, data, size);
    return TRUE;
}

void OnCreate(HWND window)
{
    HWND edit = CreateWindowExA(
        WS_EX_CLIENTEDGE, "EDIT", "",
        WS_CHILD | WS_VISIBLE | WS_VSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOVSCROLL, 0, 0, 0,
        0, window, reinterpret_cast<HMENU>(kEditId), nullptr, nullptr);
    SendMessageA(edit, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(ANSI_FIXED_FONT)),
                 FALSE);
    SendMessageA(edit, EM_SETLIMITTEXT, 0, 0);
}

void OnSize(HWND window, LPARAM size)
{
    MoveWindow(GetDlgItem(window, kEditId), 0, 0, LOWORD(size), HIWORD(size), TRUE);
}

void OnDestroy()
{
    if (--g_nOpenWindows == 0) PostQuitMessage(0);
}

LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_CREATE: OnCreate(window); return 0;
    case WM_SIZE: OnSize(window, lParam); return 0;
    case WM_COPYDATA: return OnCopyData(window, reinterpret_cast<const COPYDATASTRUCT*>(lParam));
    case WM_DESTROY: OnDestroy(); return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

bool OpenViewer(HINSTANCE instance, const char* className, int y)
{
    WNDCLASSA wc = {};
    wc.lpfnWndProc = WindowProc;
    wc.hInstance = instance;
    wc.hCursor = LoadCursor(nullptr, IDC_ARROW);
    wc.hIcon = LoadIcon(nullptr, IDI_INFORMATION);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    wc.lpszClassName = className;
    if (!RegisterClassA(&wc)) return false;
    std::string title = std::string("TraceWin - ") + className;
    HWND window = CreateWindowExA(0, className, title.c_str(), WS_OVERLAPPEDWINDOW, 40, y, 640, 360,
                                  nullptr, nullptr, instance, nullptr);
    if (!window) return false;
    ++g_nOpenWindows;
    ShowWindow(window, SW_SHOWNOACTIVATE);
    return true;
}

std::string OptionValue(const char* commandLine, const char* option)
{
    const char* p = strstr(commandLine, option);
    if (!p) return "";
    p += strlen(option);
    bool quoted = *p == '"';
    if (quoted) ++p;
    const char* end = p;
    while (*end && (quoted ? *end != '"' : *end != ' '))
        ++end;
    return std::string(p, end);
}
} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR commandLine, int)
{
    std::string out = OptionValue(commandLine, "/out:");
    std::string which = OptionValue(commandLine, "/class:");
    if (which.empty()) which = "twin";
    if (!out.empty()) g_pRecordFile = fopen(out.c_str(), "ab");

    bool ok = true;
    if (which == "twin" || which == "both") ok &= OpenViewer(instance, kTraceWinClass, 40);
    if (which == "mfx" || which == "both") ok &= OpenViewer(instance, kMfxClass, 420);
    if (!ok || g_nOpenWindows == 0)
    {
        MessageBoxA(nullptr, "Usage: TraceWin.exe [/out:FILE] [/class:twin|mfx|both]", "TraceWin",
                    MB_OK | MB_ICONHAND);
        return 1;
    }

    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0)
    {
        TranslateMessage(&msg);
        DispatchMessageA(&msg);
    }
    if (g_pRecordFile) fclose(g_pRecordFile);
    return 0;
}
