// The demo game: Tarn.exe (the game) and trnmp.exe (its second program) are this one
// program under two names. It opens a window that says which program it is, with its
// command line and working folder, and holds the game's mutex ([Mutex] Product of the
// product's setup.ini) for as long as it runs, so that the launcher knows it runs.
#include "product/demo/demo_Common.h"

namespace
{
constexpr int kTextId = 1;
std::string g_text;

LRESULT CALLBACK GameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_CREATE:
        CreateWindowExA(0, "STATIC", g_text.c_str(), WS_CHILD | WS_VISIBLE, 16, 16, 560, 120,
                        window, reinterpret_cast<HMENU>(kTextId), nullptr, nullptr);
        return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}
} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show)
{
    std::string folder = demo::OwnFolder();
    std::string mutexName = demo::SetupValue({folder + "\\Install", folder + "\\..\\Install"},
                                             "Mutex", "Product", "TarnGameMutex");
    HANDLE mutex = CreateMutexA(nullptr, TRUE, mutexName.c_str());

    char cwd[MAX_PATH] = {};
    GetCurrentDirectoryA(MAX_PATH, cwd);
    bool second = _stricmp(demo::OwnName().c_str(), "trnmp.exe") == 0;
    std::string title = second ? "Tarn Online" : "Tarn";
    g_text = "This is " + demo::OwnName() + " (" + title + ").\r\nCommand line: [" +
             demo::Arguments() + "]\r\nWorking folder: [" + cwd + "]\r\nGame mutex: [" + mutexName +
             "]";

    int code =
        demo::RunMainWindow(instance, "TarnDemoGame", title.c_str(), GameProc, 620, 200, show);
    if (mutex) CloseHandle(mutex);
    return code;
}
