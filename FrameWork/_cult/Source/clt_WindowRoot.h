// CltWindowRoot: the root of the widget tree of one window. Repaint requests are gathered
// into their bounding rectangle, which becomes one InvalidateRect without erasing once the
// window's message has been handled, and before a command is sent (ApplyRepaints: each call
// is a round trip to the system, a page change asks some twenty times, and the paint covers
// the bounding rectangle anyway). Notifications become WM_COMMAND to the window, and the
// root's system hooks are answered with this window (capture, keys, sounds, moving it).
// Screen readers get the tree through the window's accessible object, and hear of each
// focus change.
// (Windows only.)
#pragma once

#include <windows.h>

#include "FrameWork/_cult/Source/clt_Widget.h"

class CltAccessible;

class CltWindowRoot : public CltRootWidget
{
  public:
    ~CltWindowRoot() override;
    void Invalidate(const CltRect& r) override;
    // Passes the gathered repaint requests to the system; the window calls it after each
    // message.
    void ApplyRepaints();
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
    // While muted, focus changes play no sound (the window's first page takes its focus
    // before the opening sound has started, which a focus sound would otherwise not cut).
    void MuteFocusSounds(bool muted) { m_bFocusSoundsMuted = muted; }
    bool GetWindowRect(CltRect& r) const override;
    void MoveWindow(const CltRect& r) override;
    bool AskSystemPointerLeave() override;
    void StartTicks() override;
    void StopTicks() override;
    void AnnounceFocus(CltWidget* w) override;
    void AnnounceNewParts() override;

    // Answers WM_GETOBJECT for the client area with the tree's accessible object (made on
    // the first request); false for every other object, which the system describes.
    bool AnswerGetObject(WPARAM wParam, LPARAM lParam, LRESULT& answer);

  private:
    HWND m_hWnd = nullptr;
    CltRect m_rcRepaint; // the gathered repaint requests' bounding rectangle
    CltAccessible* m_pAccessible = nullptr;
    bool m_bFocusSoundsMuted = false;
};
