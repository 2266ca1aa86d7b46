// A stand-in for the help viewer: a hidden window of the class WinHelpA looks for
// ("MS_WINHELP") that writes each help request it receives to a log file, one line each:
//   command=N file=HELPFILE
// The first line, "ready", is written once the window exists. Under Wine a request
// arrives as WM_COPYDATA tagged 0x0A1DE505, holding the command and the help file's name.
//   help_recorder.exe LOG_FILE
#include <windows.h>

#include <cstdio>

namespace
{
const char* g_log = nullptr;

void Write(const char* line)
{
    if (FILE* f = fopen(g_log, "a"))
    {
        fprintf(f, "%s\n", line);
        fclose(f);
    }
}

#pragma pack(push, 1)
struct HelpRequest
{
    WORD size, command;
    LONG data, reserved;
    WORD fileOffset, dataOffset;
};
#pragma pack(pop)

LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COPYDATA)
    {
        const auto* copy = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
        if (copy->dwData != 0x0A1DE505 || copy->cbData < sizeof(HelpRequest)) return FALSE;
        const auto* request = static_cast<const HelpRequest*>(copy->lpData);
        const char* base = static_cast<const char*>(copy->lpData);
        char line[600];
        snprintf(line, sizeof line, "command=%u file=%.500s", request->command,
                 request->fileOffset && request->fileOffset < copy->cbData
                     ? base + request->fileOffset
                     : "");
        Write(line);
        return TRUE;
    }
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcA(window, message, wParam, lParam);
}
} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int)
{
    if (__argc < 2) return 2;
    g_log = __argv[1];
    WNDCLASSA wc = {};
    wc.lpfnWndProc = Proc;
    wc.hInstance = instance;
    wc.lpszClassName = "MS_WINHELP";
    if (!RegisterClassA(&wc)) return 1;
    if (!CreateWindowA("MS_WINHELP", "help recorder", WS_OVERLAPPED, 0, 0, 10, 10, nullptr, nullptr,
                       instance, nullptr))
        return 1;
    Write("ready");
    MSG msg;
    while (GetMessageA(&msg, nullptr, 0, 0) > 0)
        DispatchMessageA(&msg);
    return 0;
}
