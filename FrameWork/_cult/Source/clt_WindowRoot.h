// CltWindowRoot: the root of the widget tree of one window. Repaint requests become
// InvalidateRect without erasing, notifications become WM_COMMAND to the window, and the
// root's system hooks are answered with this window (capture, keys, sounds, moving it).
// (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_Widget.h"

class CltWindowRoot : public CltRootWidget
{
  public:
    void Invalidate(const CltRect& r) override;
    // Sends WM_COMMAND (wParam the id, lParam the source) for a non-zero id; a notification
    // never goes past the root.
    bool OnNotify(uint32_t id, CltWidget* source) override;

    // Keeps the window. Its timer 1 (period 50 ms) runs only while a widget asks for ticks:
    // a timer that always ran would keep the machine from idling while the launcher is open.
    void Attach(HWND window);
    HWND Window() const { return m_hWnd; }

    void CaptureSystemPointerToFocusWindow() override;
    void CaptureSystemPointer() override;
    void ReleaseSystemPointer() override;
    bool IsShiftDown() const override;
    void PlayFocusSound(const char* path) override;
    bool GetWindowRect(CltRect& r) const override;
    void MoveWindow(const CltRect& r) override;
    void StartTicks() override;
    void StopTicks() override;

  private:
    HWND m_hWnd = nullptr;
};
