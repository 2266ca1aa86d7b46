// CltButton: the behaviour every button shares, apart from drawing. It works out the state
// (Normal, Highlighted, Pressed) from the pointer, the left button and the keyboard focus,
// plays the focus sound, and sends its command up the tree on a click or on Enter.
//
// A click is a release inside the rectangle (edges included) of the button the left
// button went down on. Notify is always the last thing a click does: the command may
// destroy this very button.
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
    void Activate() override;

    int32_t State() const { return m_nState; }
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
};
