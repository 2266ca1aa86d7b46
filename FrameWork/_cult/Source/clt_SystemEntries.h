// Libraries of the system come from the system folder only. By default a library loaded
// by name is looked for beside the program and in the current folder first, so a file of
// that name on the disc or in a download folder would run inside the launcher. Before
// anything else is constructed, the program's library search is limited to the system
// folder (this covers what the system's own libraries load by name on the program's
// behalf, the theming library for one). Libraries the program would import by name and
// that the loader does not know as its own (the sound library, video for windows, the
// common controls, and for screen readers COM, OLE automation and the accessibility library)
// are not imported: an import is loaded before any of the program's code
// runs, and the common controls load the theming library as they start. Nor is the shell
// library, with the two it pulls in: the launcher starts programs long after its window
// has opened, and the window should not wait for them. Their entries are looked up on
// first call instead: the common controls' in the copy the program's manifest names, the
// others' in the system folder's copy.
// An entry that cannot be found does nothing and answers as a failed call would.
// (Windows only.)
#pragma once

#include <windows.h>

#include <oleacc.h>
#include <shellapi.h>
#include <vfw.h>

BOOL clt_PlaySound(const char* sound, HMODULE module, DWORD flags);

BOOL clt_ShellExecuteEx(SHELLEXECUTEINFOA* info);

void clt_InitCommonControls();

HDRAWDIB clt_DrawDibOpen();
BOOL clt_DrawDibDraw(HDRAWDIB drawDib, HDC dc, int x, int y, int width, int height,
                     BITMAPINFOHEADER* header, void* bits, int sourceX, int sourceY,
                     int sourceWidth, int sourceHeight, UINT flags);
BOOL clt_DrawDibClose(HDRAWDIB drawDib);

HRESULT clt_CoInitializeEx(void* reserved, DWORD flags);
BSTR clt_SysAllocStringLen(const OLECHAR* text, UINT length);
LRESULT clt_LresultFromObject(REFIID id, WPARAM wParam, IUnknown* object);
HRESULT clt_CreateStdAccessibleObject(HWND window, LONG objectId, REFIID id, void** object);
