// CltButton: the behaviour every button shares, apart from drawing. It works out the state
// (Normal, Highlighted, Pressed) from the pointer, the left button and the keyboard focus,
// plays the focus sound, and sends its command up the tree on a click or on Enter.
//
// A click is a release inside the rectangle (edges included) of the button the left
// button went down on. Notify is always the last thing a click does: the command may
// destroy this very button.
//
// A button may light up over a part of itself only (a title-bar button whose picture has a
// margin): given a hot area, its look follows the pointer over that area instead of its
// state. The hover look comes on the move that brings the pointer into the area, the
// resting look with every position outside it and when the pointer leaves the window, the
// pressed look with a press in the area; the state machine and the clicks stay as above.
#pragma once

#include "FrameWork/_cult/Source/clt_String.h"
#include "FrameWork/_cult/Source/clt_Widget.h"

enum CltButtonState : int32_t
{
    ButtonNormal = 1,
    ButtonHighlighted = 2,
    ButtonPressed = 3,
};

class CltButton : public CltWidget
{
  public:
    void SetSound(const char* path) { m_strSound = path; }
    // The name a screen reader speaks, in the given code page (0: the system's).
    void SetName(const char* name, uint32_t codePage = 0);
    const CltString& Name() const { return m_strName; }
    CltAccessibleInfo Describe() const override;

    void OnFocus(bool gained) override;
    void OnMouseEnter() override;
    void OnMouseLeave() override;
    void OnLButtonDown(uint32_t flags, int32_t x, int32_t y) override;
    void OnLButtonUp(uint32_t flags, int32_t x, int32_t y) override;
    void OnPointerInWindow(bool inside, int32_t x, int32_t y) override;
    void Activate() override;

    // The hot area in design window coordinates, edges included.
    void SetHotArea(const CltRect& designArea);
    // The resting look (a window back from being minimised), wherever the pointer is.
    void ShowResting() { SetLook(ButtonNormal); }

    int32_t State() const { return m_nState; }
    // What the button shows: its state, or with a hot area its look.
    int32_t Look() const { return m_bHotArea ? m_nLook : m_nState; }
    bool IsPressed() const { return m_bPressed; }
    const CltString& Sound() const { return m_strSound; }

  protected:
    bool m_bPressed = false;
    int32_t m_nState = ButtonNormal;
    CltString m_strSound;
    CltString m_strName;
    uint32_t m_nCodePage = 0;

  private:
    void SetState(int32_t state);
    void SetLook(int32_t look);

    bool m_bHotArea = false;
    bool m_bHot = false; // the pointer was in the hot area at its last position
    CltRect m_HotArea;
    int32_t m_nLook = ButtonNormal;
};
