// CltWindow: class registration, creation and message routing.
#include "FrameWork/_cult/Source/clt_Window.h"

#include "FrameWork/_cult/Source/clt_State.h"

namespace
{
HINSTANCE Instance()
{
    return static_cast<HINSTANCE>(clt_GetState()->m_hInstance);
}
} // namespace

LRESULT CltWindow::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    return m_hWnd ? m_pfnDefault(m_hWnd, message, wParam, lParam) : 0;
}

bool CltWindow::PreTranslate(MSG*)
{
    return false;
}

LRESULT CltWindow::DrawItem(DRAWITEMSTRUCT*)
{
    return 0;
}

bool CltWindow::Create(CltWindow* parent, DWORD style, DWORD exStyle, const char* className,
                       bool show)
{
    HWND window = CreateWindowExA(exStyle, className, "", style, 0, 0, 0, 0,
                                  parent ? parent->m_hWnd : nullptr, nullptr, Instance(), this);
    if (!window) return false;
    if (!show) return true;
    ShowWindow(window, SW_SHOWNORMAL);
    UpdateWindow(window);
    return true;
}

bool clt_RegisterWindowClass(CltString& className, DWORD style, HCURSOR cursor, HBRUSH brush,
                             HICON icon)
{
    HINSTANCE instance = Instance();
    // The format's %x takes 32 bits: handles are written by their low 32 bits.
    auto hex = [](const void* handle) { return unsigned(uintptr_t(handle)); };
    if (!cursor && !brush && !icon)
        className.format("CltWin:%x:%x", hex(instance), unsigned(style));
    else
        className.format("CltWin:%x:%x:%x:%x:%x", hex(instance), unsigned(style), hex(cursor),
                         hex(brush), hex(icon));
    WNDCLASSA wc = {};
    if (GetClassInfoA(instance, className.c_str(), &wc)) return true;
    wc.style = style;
    wc.lpfnWndProc = clt_WindowProc;
    wc.hInstance = instance;
    wc.hIcon = icon;
    wc.hCursor = cursor;
    wc.hbrBackground = brush;
    wc.lpszClassName = className.c_str();
    return RegisterClassA(&wc) != 0;
}

CltWindow* clt_WindowFromHandle(HWND window)
{
    return window ? reinterpret_cast<CltWindow*>(GetWindowLongPtrA(window, GWLP_USERDATA))
                  : nullptr;
}

LRESULT CALLBACK clt_WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    CltWindow* object = nullptr;
    if (message == WM_NCCREATE)
    {
        object = static_cast<CltWindow*>(reinterpret_cast<CREATESTRUCTA*>(lParam)->lpCreateParams);
        if (object)
        {
            SetWindowLongPtrA(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(object));
            object->m_hWnd = window;
        }
    }
    else if (message == WM_DRAWITEM)
    {
        HWND item = reinterpret_cast<DRAWITEMSTRUCT*>(lParam)->hwndItem;
        if (CltWindow* child = clt_WindowFromHandle(item))
            return child->DrawItem(reinterpret_cast<DRAWITEMSTRUCT*>(lParam));
    }
    if (!object) object = clt_WindowFromHandle(window);
    if (!object) return DefWindowProcA(window, message, wParam, lParam);
    LRESULT result = object->WindowProc(message, wParam, lParam);
    if (message == WM_DESTROY) object->m_hWnd = nullptr;
    return result;
}
