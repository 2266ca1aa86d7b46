// Syscheck.exe: shows what the game needs to know about this machine (memory, paging
// space, Windows version, display devices, DirectX) in a window, and ends when the
// window is closed. The launcher waits for it.
#include "product/demo/demo_Common.h"

#include "FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include <ddraw.h>

#include <cstdio>

namespace
{
std::string g_report;

BOOL WINAPI AddDisplay(GUID*, LPSTR description, LPSTR, LPVOID context)
{
    auto* text = static_cast<std::string*>(context);
    *text += std::string("    ") + (description ? description : "?") + "\r\n";
    return TRUE;
}

std::string Report()
{
    char line[256];
    std::string text;
    MEMORYSTATUSEX memory = {};
    memory.dwLength = sizeof memory;
    GlobalMemoryStatusEx(&memory);
    snprintf(line, sizeof line, "Physical memory: %llu MiB (%llu MiB free)\r\n",
             memory.ullTotalPhys >> 20, memory.ullAvailPhys >> 20);
    text += line;
    snprintf(line, sizeof line, "Paging space: %llu MiB (%llu MiB free)\r\n",
             memory.ullTotalPageFile >> 20, memory.ullAvailPageFile >> 20);
    text += line;
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(&version);
    snprintf(line, sizeof line, "Windows version: %lu.%lu (build %lu) %s\r\n",
             version.dwMajorVersion, version.dwMinorVersion, version.dwBuildNumber,
             version.szCSDVersion);
    text += line;

    text += "Display devices:\r\n";
    std::string displays;
    if (HMODULE ddraw = clt_LoadSystemLibrary("ddraw.dll"))
    {
        using EnumerateFn = HRESULT(WINAPI*)(LPDDENUMCALLBACKA, LPVOID);
        if (auto enumerate = clt_GetEntry<EnumerateFn>(ddraw, "DirectDrawEnumerateA"))
            enumerate(AddDisplay, &displays);
        FreeLibrary(ddraw);
    }
    text += displays.empty() ? "    none found\r\n" : displays;

    std::string directX = "unknown (no setup library)";
    if (HMODULE setup = LoadLibraryA((demo::OwnFolder() + "\\VokSetup.dll").c_str()))
    {
        if (auto check = clt_GetEntry<PFN_VokSetup_CheckDirectX>(setup, "VokSetup_CheckDirectX"))
            directX = check() == 1 ? "ready" : "not ready: please install DirectX";
        FreeLibrary(setup);
    }
    text += "DirectX: " + directX + "\r\n";
    return text;
}

LRESULT CALLBACK CheckProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_CREATE:
        CreateWindowExA(WS_EX_CLIENTEDGE, "EDIT", g_report.c_str(),
                        WS_CHILD | WS_VISIBLE | ES_MULTILINE | ES_READONLY | WS_VSCROLL, 8, 8, 520,
                        220, window, reinterpret_cast<HMENU>(1), nullptr, nullptr);
        return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}
} // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int show)
{
    g_report = Report();
    return demo::RunMainWindow(instance, "TarnSysCheck", "System Check", CheckProc, 560, 290, show);
}
