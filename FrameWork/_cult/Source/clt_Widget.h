// CltWidget and CltRootWidget: the retained widget tree that lives inside one window.
//
// Every rectangle is in window client coordinates at every depth. A parent owns its
// children; destroying a widget destroys its subtree, first child first. Hit testing
// prefers earlier siblings, painting puts later siblings on top.
//
// The root keeps the keyboard focus, the mouse route (capture) and the hover, and turns
// window messages into widget calls. Whatever the tree needs from the operating system
// (the system's mouse capture, the Shift key, sounds, moving the window) it asks of its
// root through the root's system hooks, so this code builds and runs without a window
// system; CltWindowRoot answers the hooks with its window.
//
// Invariant: the root never holds a pointer to a destroyed widget. A widget's destructor
// tells its root (ForgetWidget), which drops it from focus, hover and capture.
#pragma once

#include <cstdint>

#include "FrameWork/_cult/Source/clt_Rect.h"

class CltCanvas;
class CltRootWidget;
class CltWidget;

// Widget flags.
enum : uint32_t
{
    CltWidgetVisible = 2,   // the widget paints itself
    CltWidgetFocusable = 4, // the widget can hold the keyboard focus
};

// The window messages and keys the root understands (their Windows values).
enum : uint32_t
{
    CltMsgKeyDown = 0x0100,
    CltMsgTimer = 0x0113,
    CltMsgMouseMove = 0x0200,
    CltMsgLButtonDown = 0x0201,
    CltMsgLButtonUp = 0x0202,
    CltMsgLButtonDblClk = 0x0203,
    CltMsgMouseLeave = 0x02A3, // the pointer left the window (after AskSystemPointerLeave)
    // Posted by the window's accessible object: activate part wParam (see
    // clt_AccessibleParts.h) if its id is still lParam.
    CltMsgActivatePart = 0x8010,
    CltKeyTab = 9,
    CltKeyReturn = 13,
    CltKeyLeft = 37,
    CltKeyUp = 38,
    CltKeyRight = 39,
    CltKeyDown = 40,
};

// What a screen reader is told of a widget: its name (empty: the widget is none of the
// parts a reader speaks, as a panel or the caption), the code page of the name's bytes (0:
// the system's), and whether it shows pressed.
struct CltAccessibleInfo
{
    const char* name = "";
    uint32_t codePage = 0;
    bool pressed = false;
};

// Makes one class of widget: constructs it and attaches it with Create; a widget whose
// Create fails is destroyed again and null returned.
class CltWidgetFactory
{
  public:
    virtual CltWidget* Create(CltWidget* parent, const CltRect& r, uint32_t flags, uint32_t id) = 0;

  protected:
    ~CltWidgetFactory() = default;
};

class CltWidget
{
  public:
    CltWidget() = default;
    CltWidget(const CltWidget&) = delete;
    CltWidget& operator=(const CltWidget&) = delete;
    virtual ~CltWidget();

    virtual void OnFocus(bool gained);
    virtual bool HitTest(const CltPoint& p);
    virtual void Invalidate(const CltRect& r);
    virtual CltWidget* SetCapture(CltWidget* w);
    virtual CltWidget* GetCapture();
    virtual void ReleaseCapture();
    virtual bool OnNotify(uint32_t id, CltWidget* source);
    virtual void OnLButtonUp(uint32_t flags, int32_t x, int32_t y);
    virtual void OnLButtonDblClk(uint32_t flags, int32_t x, int32_t y);
    virtual void OnLButtonDown(uint32_t flags, int32_t x, int32_t y);
    virtual void OnMouseMove(uint32_t flags, int32_t x, int32_t y);
    virtual void OnMouseEnter();
    virtual void OnMouseLeave();
    // Every pointer position over the window (window coordinates), whichever widget is under
    // the pointer or holds it, and the pointer leaving the window (inside false).
    virtual void OnPointerInWindow(bool inside, int32_t x, int32_t y);
    virtual void OnInitialFocus();
    virtual void Paint(CltCanvas& canvas, const CltRect& area);
    virtual void OnTick();
    virtual void Activate();
    virtual CltAccessibleInfo Describe() const;

    // Attaches the widget below parent (or, without one, checks that it is a root);
    // does not link it into the parent's child list. Returns this, or null.
    CltWidget* Create(CltWidget* parent, const CltRect& r, uint32_t flags, uint32_t id);
    CltWidget* CreateChild(CltWidgetFactory& factory, const CltRect& r, uint32_t flags,
                           uint32_t id);
    bool AddChild(CltWidget* child);
    // Unlinks and destroys child; false when child is not a child of this widget.
    bool RemoveChild(CltWidget* child);
    // Climbs from this widget to the root until a widget handles the notification. A zero
    // id or null source is replaced by the asked widget's id or the widget itself.
    void Notify(uint32_t id, CltWidget* source);
    void SetRect(const CltRect& r);
    // A design coordinate or size at the DPI of the widget's window (see clt_Scale.h), and a
    // window coordinate as a design coordinate (rounded toward zero).
    int32_t Scaled(int32_t v) const;
    int32_t Unscaled(int32_t v) const;
    // A widget that changes by itself (an animation) asks for OnTick while it does. The
    // window's timer runs only while some widget of the tree asks, so that an idle window
    // wakes nobody; a widget that goes stops asking.
    void WantTicks(bool want);
    bool WantsTicks() const { return m_bWantsTicks; }
    void TakeFocus(bool take);
    bool IsFocused() const;
    CltWidget* HitTestTree(int32_t x, int32_t y);
    void PaintTree(CltCanvas& canvas, const CltRect& clip);

    CltRootWidget* Host() const { return m_pHost; }
    CltWidget* Parent() const { return m_pParent; }
    CltWidget* FirstChild() const { return m_pFirstChild; }
    CltWidget* LastChild() const { return m_pLastChild; }
    CltWidget* NextSibling() const { return m_pNext; }
    CltWidget* PreviousSibling() const { return m_pPrevious; }
    const CltRect& Rect() const { return m_Rect; }
    uint32_t Flags() const { return m_dwFlags; }
    uint32_t Id() const { return m_dwId; }
    bool HasFlag(uint32_t mask) const { return (m_dwFlags & mask) != 0; }

  protected:
    CltRootWidget* m_pHost = nullptr;
    CltWidget* m_pParent = nullptr;
    CltWidget* m_pFirstChild = nullptr;
    CltWidget* m_pLastChild = nullptr;
    CltWidget* m_pNext = nullptr;
    CltWidget* m_pPrevious = nullptr;
    CltRect m_Rect;
    uint32_t m_dwFlags = 0;
    uint32_t m_dwId = 0;
    bool m_bWantsTicks = false;

    void DestroyChildren();
};

class CltRootWidget : public CltWidget
{
  public:
    CltRootWidget();
    ~CltRootWidget() override;

    CltWidget* SetCapture(CltWidget* w) override;
    CltWidget* GetCapture() override;
    void ReleaseCapture() override;

    // w is null or focusable. The old focus hears OnFocus(false) before the new one hears
    // OnFocus(true), also when both are the same widget.
    void SetFocusWidget(CltWidget* w);
    void FocusNext();
    void FocusPrevious();
    void ActivateFocus();
    void ForgetWidget(CltWidget* w);
    // 1 for the eight messages the root handles (whether or not a widget was found), else 0.
    int HandleMessage(uint32_t message, uintptr_t wParam, intptr_t lParam);

    // The window's DPI (96 at 100 %): widgets place what they draw by it.
    void SetDpi(int32_t dpi) { m_nDpi = dpi; }
    int32_t Dpi() const { return m_nDpi; }
    CltWidget* Focus() const { return m_pFocus; }
    uint32_t FocusId() const { return m_dwFocusId; }
    CltWidget* Hover() const { return m_pHover; }
    bool HasCapture() const { return m_pCapture != NoCapture(); }
    // The capture value that stands for no capture: neither null nor any widget.
    static CltWidget* NoCapture();

    // System hooks. The base root has no system: it captures nothing, sees no Shift key,
    // plays nothing and has no window to move.
    virtual void CaptureSystemPointerToFocusWindow() {}
    virtual void CaptureSystemPointer() {}
    virtual void ReleaseSystemPointer() {}
    virtual bool IsShiftDown() const { return false; }
    virtual void PlayFocusSound(const char* path) { (void)path; }
    virtual bool GetWindowRect(CltRect& r) const
    {
        (void)r;
        return false;
    }
    virtual void MoveWindow(const CltRect& r) { (void)r; }
    // Asks the system for one CltMsgMouseLeave when the pointer leaves the window; true when
    // it will send one (the root asks again after it came).
    virtual bool AskSystemPointerLeave() { return false; }
    // Tells screen readers that w has the focus now.
    virtual void AnnounceFocus(CltWidget* w) { (void)w; }
    // Tells screen readers that the widgets they can read have changed (a new page).
    virtual void AnnounceNewParts() {}
    // Called when the first widget asks for ticks and when the last one stops asking.
    virtual void StartTicks() {}
    virtual void StopTicks() {}
    // How many widgets of the tree ask for ticks.
    int32_t Tickers() const { return m_nTickers; }

  protected:
    CltWidget* m_pFocus = nullptr;
    CltWidget* m_pCapture;
    CltWidget* m_pHover = nullptr;
    uint32_t m_dwFocusId = 0;
    int32_t m_nLastX = 0, m_nLastY = 0;      // the last pointer move, in the window
    int32_t m_nLastLeft = 0, m_nLastTop = 0; // and where the window was then
    int32_t m_nTickers = 0;
    int32_t m_nDpi = 96;
    bool m_bLeaveAsked = false;

  private:
    friend class CltWidget;
    void CountTicker(bool wants);
    CltWidget* Target(int32_t x, int32_t y);
    void FocusStep(bool forward);
    void TrackPointer(uintptr_t wParam, int32_t x, int32_t y);
    void OnKeyDown(uintptr_t key);
    void ActivatePart(int32_t number, uint32_t id);
    static void TickTree(CltWidget* w);
    static void TellPointer(CltWidget* w, bool inside, int32_t x, int32_t y);
};

// A factory for one widget class.
template <class W> class CltWidgetFactoryOf final : public CltWidgetFactory
{
  public:
    CltWidget* Create(CltWidget* parent, const CltRect& r, uint32_t flags, uint32_t id) override
    {
        W* w = new W;
        if (w->CltWidget::Create(parent, r, flags, id)) return w;
        delete w;
        return nullptr;
    }
};
