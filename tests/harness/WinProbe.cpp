// WinProbe: looks at a program's main window from outside, for test drivers that run
// outside Wine. The window is the visible or minimised top-level window of a framework
// class ("CltWin:...") with the given text, or with TEXT "class=NAME" the window of that
// class.
//
// Usage: WinProbe.exe TEXT COMMAND [N]
//   rect      prints "left top right bottom" of the window
//   iconic    prints 1 when the window is minimised, else 0
//   visible   prints 1 when the window is visible, else 0
//   activate  another window becomes active, then this one (as a player who switches to
//             another program and back through the task bar)
//   region    prints "count left top right bottom" of the window's region, or "none"
//   close     asks the window to close as the taskbar's "Close window" does
//   endsession
//             prints the window's answer to "may the session end?", then tells it that it
//             ends, as Windows does at a log-off
//   resources prints the GDI and USER objects of the window's process and its private
//             bytes in KiB (its commit charge: Wine leaves PrivateUsage 0)
//   comctl    prints 6 when the window's process has loaded the common controls of version
//             6 (its manifest asks for today's look), 5 for the plain library, 0 for none
//   icons     prints what the window answers for its big, small and small-2 icons: "icon"
//             for a real icon, 0 for none (the class icon is shown), else "bad"
//   dpi N     tells the window that its screen's DPI is now N, as Windows does when the
//             window moves to a screen of another DPI (without a suggested rectangle: a
//             pointer cannot cross into another process)
//   text N    prints the text of the window's child N
//   readers   as a screen reader: the client's accessible object, then each child, one
//             line each: "id|name|role|states|default action"
//   press N   as a screen reader: the default action of child N ("pressed" or "refused"),
//             then what it hears until a child takes the focus or the window is gone
//   tab       as a screen reader while Tab is pressed in the window: what it hears until a
//             child takes the focus ("reorder" when the children change, "id|name" of the
//             child that takes the focus)
// Exit code 0 when the window was found, 1 when not, 2 on usage.
#include "harness/wine_Harness.h"

#include <windows.h>
#include <oleacc.h>
#include <psapi.h>

#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace
{
// The object and child a screen reader would speak of. (The accessibility interface's id is
// taken by value: in a statically linked program the import library's symbol is a thunk.)
IAccessible* ClientObject(HWND w)
{
    IAccessible* object = nullptr;
    AccessibleObjectFromWindow(w, DWORD(OBJID_CLIENT), __uuidof(IAccessible),
                               reinterpret_cast<void**>(&object));
    return object;
}

std::string Text(BSTR text)
{
    std::string out;
    for (const OLECHAR* c = text; c && *c; ++c)
        out += *c < 128 ? char(*c) : '?';
    SysFreeString(text);
    return out;
}

std::string Describe(IAccessible* object, long id)
{
    VARIANT child = {}, role = {}, state = {};
    child.vt = VT_I4, child.lVal = id;
    BSTR name = nullptr, action = nullptr;
    object->get_accName(child, &name);
    object->get_accRole(child, &role);
    object->get_accState(child, &state);
    object->get_accDefaultAction(child, &action);
    std::string states;
    for (auto [flag, word] : {std::pair<long, const char*>{STATE_SYSTEM_FOCUSABLE, "focusable"},
                              {STATE_SYSTEM_FOCUSED, "focused"},
                              {STATE_SYSTEM_PRESSED, "pressed"}})
        if (state.vt == VT_I4 && (state.lVal & flag))
            states += (states.empty() ? "" : " ") + std::string(word);
    const char* roleName = role.vt != VT_I4                      ? "?"
                           : role.lVal == ROLE_SYSTEM_CLIENT     ? "client"
                           : role.lVal == ROLE_SYSTEM_PUSHBUTTON ? "button"
                                                                 : "other";
    return std::to_string(id) + "|" + Text(name) + "|" + roleName + "|" + states + "|" +
           Text(action);
}

// What a screen reader hears from the window's client: "reorder" when its parts change,
// "id|name" of the part that takes the focus.
HWND g_window;
std::vector<std::string> g_heard;
bool g_focusHeard = false;
void CALLBACK OnEvent(HWINEVENTHOOK, DWORD event, HWND w, LONG objectId, LONG childId, DWORD, DWORD)
{
    if (w != g_window || objectId != OBJID_CLIENT) return;
    if (event == EVENT_OBJECT_REORDER)
    {
        g_heard.push_back("reorder");
        return;
    }
    IAccessible* object = nullptr;
    VARIANT child = {};
    if (AccessibleObjectFromEvent(w, DWORD(objectId), DWORD(childId), &object, &child) != S_OK)
        return;
    BSTR name = nullptr;
    object->get_accName(child, &name);
    g_heard.push_back(std::to_string(childId) + "|" + Text(name));
    g_focusHeard = true;
    object->Release();
}

// Listens to the window's process from another process, as a screen reader does, while
// 'act' runs and until a part takes the focus or the window is gone.
template <typename Act> void Listen(HWND w, Act act)
{
    DWORD pid = 0;
    GetWindowThreadProcessId(w, &pid);
    g_window = w;
    HWINEVENTHOOK hook = SetWinEventHook(EVENT_OBJECT_REORDER, EVENT_OBJECT_FOCUS, nullptr, OnEvent,
                                         pid, 0, WINEVENT_OUTOFCONTEXT);
    act();
    MSG msg;
    for (DWORD start = GetTickCount();
         !g_focusHeard && IsWindow(w) && GetTickCount() - start < 10000;)
        if (MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT) == WAIT_OBJECT_0)
            while (PeekMessageA(&msg, nullptr, 0, 0, PM_REMOVE))
                DispatchMessageA(&msg);
    UnhookWinEvent(hook);
    for (const std::string& line : g_heard)
        printf("%s\n", line.c_str());
}
} // namespace

int main(int argc, char** argv)
{
    if (argc < 3 || argc > 4)
    {
        fprintf(stderr, "usage: WinProbe.exe TEXT COMMAND [N]\n");
        return 2;
    }
    HWND w = harness::FindFrameworkWindow(argv[1]);
    if (!w) return 1;
    const char *command = argv[2], *n = argc > 3 ? argv[3] : "0";
    DWORD pid = 0;
    GetWindowThreadProcessId(w, &pid);
    HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, pid);
    if (!strcmp(command, "rect"))
    {
        RECT r;
        GetWindowRect(w, &r);
        printf("%ld %ld %ld %ld\n", r.left, r.top, r.right, r.bottom);
    }
    else if (!strcmp(command, "text"))
    {
        char text[4096] = {};
        GetDlgItemTextA(w, atoi(n), text, sizeof text);
        _setmode(_fileno(stdout), _O_BINARY); // its line breaks as they are
        fputs(text, stdout);
    }
    else if (!strcmp(command, "iconic"))
        printf("%d\n", IsIconic(w) ? 1 : 0);
    else if (!strcmp(command, "visible"))
        printf("%d\n", IsWindowVisible(w) ? 1 : 0);
    else if (!strcmp(command, "activate"))
    {
        HWND other = CreateWindowExA(0, "STATIC", "WinProbe", WS_POPUP | WS_VISIBLE, 0, 0, 1, 1,
                                     nullptr, nullptr, nullptr, nullptr);
        SetForegroundWindow(other);
        SetForegroundWindow(w);
        DestroyWindow(other);
    }
    else if (!strcmp(command, "region"))
    {
        HRGN region = CreateRectRgn(0, 0, 0, 0);
        if (GetWindowRgn(w, region) == ERROR)
            printf("none\n");
        else
        {
            std::vector<char> data(GetRegionData(region, 0, nullptr));
            auto* rd = reinterpret_cast<RGNDATA*>(data.data());
            GetRegionData(region, DWORD(data.size()), rd);
            printf("%lu %ld %ld %ld %ld\n", rd->rdh.nCount, rd->rdh.rcBound.left,
                   rd->rdh.rcBound.top, rd->rdh.rcBound.right, rd->rdh.rcBound.bottom);
        }
        DeleteObject(region);
    }
    else if (!strcmp(command, "close"))
        PostMessageA(w, WM_SYSCOMMAND, SC_CLOSE, 0);
    else if (!strcmp(command, "endsession"))
    {
        DWORD_PTR answer = 0;
        SendMessageTimeoutA(w, WM_QUERYENDSESSION, 0, 0, SMTO_ABORTIFHUNG, 5000, &answer);
        printf("%lu\n", static_cast<unsigned long>(answer));
        fflush(stdout);
        SendMessageTimeoutA(w, WM_ENDSESSION, TRUE, 0, SMTO_ABORTIFHUNG, 5000, nullptr);
    }
    else if (!strcmp(command, "resources"))
    {
        PROCESS_MEMORY_COUNTERS_EX memory = {};
        GetProcessMemoryInfo(process, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory),
                             sizeof memory);
        printf("%lu %lu %lu\n", GetGuiResources(process, GR_GDIOBJECTS),
               GetGuiResources(process, GR_USEROBJECTS),
               static_cast<unsigned long>(memory.PagefileUsage / 1024));
    }
    else if (!strcmp(command, "comctl"))
    {
        // Wine's two copies both carry the file version 5.81: their folders tell them apart.
        HMODULE modules[512];
        DWORD bytes = 0, version = 0;
        EnumProcessModules(process, modules, sizeof modules, &bytes);
        for (DWORD i = 0; i < bytes / sizeof(HMODULE) && i < 512; ++i)
        {
            char path[MAX_PATH] = {};
            GetModuleFileNameExA(process, modules[i], path, MAX_PATH);
            CharLowerA(path);
            if (strstr(path, "\\comctl32.dll"))
                version = std::max<DWORD>(
                    version, strstr(path, "common-controls_6595b64144ccf1df_6.") ? 6 : 5);
        }
        printf("%lu\n", version);
    }
    else if (!strcmp(command, "icons"))
        for (WPARAM kind : {ICON_BIG, ICON_SMALL, ICON_SMALL2})
        {
            DWORD_PTR icon = 0;
            SendMessageTimeoutA(w, WM_GETICON, kind, 0, SMTO_ABORTIFHUNG, 5000, &icon);
            ICONINFO info;
            bool real = icon && GetIconInfo(reinterpret_cast<HICON>(icon), &info);
            if (real) DeleteObject(info.hbmColor), DeleteObject(info.hbmMask);
            printf(kind == ICON_SMALL2 ? "%s\n" : "%s ", real ? "icon" : icon ? "bad" : "0");
        }
    else if (!strcmp(command, "readers") || !strcmp(command, "press"))
    {
        CoInitialize(nullptr);
        IAccessible* object = ClientObject(w);
        if (!object) return 1;
        long count = 0;
        object->get_accChildCount(&count);
        VARIANT child = {};
        bool press = !strcmp(command, "press");
        child.vt = VT_I4, child.lVal = atol(n);
        if (press)
            Listen(w,
                   [&] {
                       printf("%s\n",
                              object->accDoDefaultAction(child) == S_OK ? "pressed" : "refused");
                   });
        for (long id = 0; !press && id <= count; ++id)
            printf("%s\n", Describe(object, id).c_str());
        object->Release();
    }
    else if (!strcmp(command, "dpi"))
    {
        WORD dpi = WORD(atoi(n));
        SendMessageTimeoutA(w, WM_DPICHANGED, MAKEWPARAM(dpi, dpi), 0, SMTO_ABORTIFHUNG, 5000,
                            nullptr);
    }
    else if (!strcmp(command, "tab"))
    {
        CoInitialize(nullptr);
        Listen(w, [&] { PostMessageA(w, WM_KEYDOWN, VK_TAB, 0); });
    }
    else
        return 2;
    fflush(stdout);
    return 0;
}
