// The library search limited to the system folder; the entries of the sound library, the
// shell, video for windows, COM, OLE automation and the accessibility library, from the
// system folder's copies, and the common controls' entry, from the copy the manifest names.
#include "FrameWork/_cult/Source/clt_SystemEntries.h"

#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"

namespace
{
// Systems without SetDefaultDllDirectories (before Windows 8 without its update) at least
// leave the current folder out.
struct SystemFolderSearch
{
    SystemFolderSearch()
    {
        using Fn = BOOL(WINAPI*)(DWORD);
        Fn limit = clt_GetEntry<Fn>(GetModuleHandleA("kernel32.dll"), "SetDefaultDllDirectories");
        if (!limit || !limit(LOAD_LIBRARY_SEARCH_SYSTEM32)) SetDllDirectoryA("");
    }
};
CLT_STATIC(CLT_INIT_LIBRARY_SEARCH) SystemFolderSearch s_systemFolderSearch;

// The entry of that name in the system folder's library; the library stays loaded.
template <typename Fn> Fn SystemEntry(const char* library, const char* name)
{
    return clt_GetEntry<Fn>(clt_LoadSystemLibrary(library), name);
}
} // namespace

BOOL clt_PlaySound(const char* sound, HMODULE module, DWORD flags)
{
    using Fn = BOOL(WINAPI*)(LPCSTR, HMODULE, DWORD);
    static const Fn play = SystemEntry<Fn>("winmm.dll", "PlaySoundA");
    return play ? play(sound, module, flags) : FALSE;
}

BOOL clt_ShellExecuteEx(SHELLEXECUTEINFOA* info)
{
    using Fn = BOOL(WINAPI*)(SHELLEXECUTEINFOA*);
    static const Fn execute = SystemEntry<Fn>("shell32.dll", "ShellExecuteExA");
    return execute ? execute(info) : FALSE;
}

// By name: the manifest's side-by-side copy (version 6) comes before any folder.
void clt_InitCommonControls()
{
    using Fn = void(WINAPI*)();
    static const Fn init = clt_GetEntry<Fn>(LoadLibraryA("comctl32.dll"), "InitCommonControls");
    if (init) init();
}

HDRAWDIB clt_DrawDibOpen()
{
    using Fn = HDRAWDIB(VFWAPI*)();
    static const Fn open = SystemEntry<Fn>("msvfw32.dll", "DrawDibOpen");
    return open ? open() : nullptr;
}

BOOL clt_DrawDibDraw(HDRAWDIB drawDib, HDC dc, int x, int y, int width, int height,
                     BITMAPINFOHEADER* header, void* bits, int sourceX, int sourceY,
                     int sourceWidth, int sourceHeight, UINT flags)
{
    using Fn = BOOL(VFWAPI*)(HDRAWDIB, HDC, int, int, int, int, LPBITMAPINFOHEADER, LPVOID, int,
                             int, int, int, UINT);
    static const Fn draw = SystemEntry<Fn>("msvfw32.dll", "DrawDibDraw");
    return draw ? draw(drawDib, dc, x, y, width, height, header, bits, sourceX, sourceY,
                       sourceWidth, sourceHeight, flags)
                : FALSE;
}

BOOL clt_DrawDibClose(HDRAWDIB drawDib)
{
    using Fn = BOOL(VFWAPI*)(HDRAWDIB);
    static const Fn close = SystemEntry<Fn>("msvfw32.dll", "DrawDibClose");
    return close ? close(drawDib) : FALSE;
}

HRESULT clt_CoInitializeEx(void* reserved, DWORD flags)
{
    using Fn = HRESULT(WINAPI*)(void*, DWORD);
    static const Fn init = SystemEntry<Fn>("ole32.dll", "CoInitializeEx");
    return init ? init(reserved, flags) : E_NOTIMPL;
}

BSTR clt_SysAllocStringLen(const OLECHAR* text, UINT length)
{
    using Fn = BSTR(WINAPI*)(const OLECHAR*, UINT);
    static const Fn allocate = SystemEntry<Fn>("oleaut32.dll", "SysAllocStringLen");
    return allocate ? allocate(text, length) : nullptr;
}

LRESULT clt_LresultFromObject(REFIID id, WPARAM wParam, IUnknown* object)
{
    using Fn = LRESULT(WINAPI*)(REFIID, WPARAM, IUnknown*);
    static const Fn answer = SystemEntry<Fn>("oleacc.dll", "LresultFromObject");
    return answer ? answer(id, wParam, object) : LRESULT(E_NOTIMPL);
}

HRESULT clt_CreateStdAccessibleObject(HWND window, LONG objectId, REFIID id, void** object)
{
    using Fn = HRESULT(WINAPI*)(HWND, LONG, REFIID, void**);
    static const Fn create = SystemEntry<Fn>("oleacc.dll", "CreateStdAccessibleObject");
    *object = nullptr;
    return create ? create(window, objectId, id, object) : E_NOTIMPL;
}
