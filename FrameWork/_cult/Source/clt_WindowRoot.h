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

    // Keeps the window and starts its timer 1 with a period of 50 ms.
    void Attach(HWND window);
    HWND Window() const { return m_hWnd; }

    void CaptureSystemPointerToFocusWindow() override;
    void CaptureSystemPointer() override;
    void ReleaseSystemPointer() override;
    bool IsShiftDown() const override;
    void PlayFocusSound(const char* path) override;
    bool GetWindowRect(CltRect& r) const override;
    void MoveWindow(const CltRect& r) override;

  private:
    HWND m_hWnd = nullptr;
};
