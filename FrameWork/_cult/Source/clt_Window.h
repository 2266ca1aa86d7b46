// CltWindow: the object side of a real window. Window classes get generated names and are
// registered once; clt_WindowProc, the procedure of every such class, ties the handle to
// its object from WM_NCCREATE on (through the window's user-data slot) and routes every
// later message to the object's WindowProc.
//
// The object must outlive its window: the base class never destroys the window. After
// the object has handled WM_DESTROY its handle is null again.
// (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_String.h"

class CltWindow
{
  public:
    CltWindow() = default;
    CltWindow(const CltWindow&) = delete;
    CltWindow& operator=(const CltWindow&) = delete;

    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual bool PreTranslate(MSG* msg); // never overridden or called in this program
    virtual LRESULT DrawItem(DRAWITEMSTRUCT* item);

    // Creates the window with an empty title at (0, 0) and no size, shows and updates it;
    // with show false it stays hidden, for a window that shows itself once it is complete.
    bool Create(CltWindow* parent, DWORD style, DWORD exStyle, const char* className,
                bool show = true);
    HWND Handle() const { return m_hWnd; }

  protected:
    HWND m_hWnd = nullptr;
    WNDPROC m_pfnDefault = DefWindowProcA;

    friend LRESULT CALLBACK clt_WindowProc(HWND, UINT, WPARAM, LPARAM);
};

// Names the class ("CltWin:instance:style" when cursor, brush and icon are all null, else
// "CltWin:instance:style:cursor:brush:icon", lower-case hexadecimal) and registers it
// unless a class of that name exists. True when the class exists afterwards.
bool clt_RegisterWindowClass(CltString& className, DWORD style, HCURSOR cursor, HBRUSH brush,
                             HICON icon);
CltWindow* clt_WindowFromHandle(HWND window);
LRESULT CALLBACK clt_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
