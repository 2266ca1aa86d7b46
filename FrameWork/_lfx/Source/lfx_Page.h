// LfxPage: the page interface that LfxMain drives, and LfxButtonPage, the base of the
// product's pages: a page names itself, may carry a variant tag, lists its buttons as
// setup-text numbers (ended by 0, command = position + 1) and carries out commands.
//
// A button page puts its column of text buttons on the surface that the launcher's main
// window lends it (LfxPageSurface) and takes them away again when hidden. One focus memory
// on that surface is shared by all pages: going forward remembers the focused entry,
// going back restores it.
//
// Pages are static objects that register with LfxMain from their constructors and are
// never destroyed by anyone else.
// (Windows only.)
#pragma once

#include "FrameWork/_cult/Source/clt_String.h"

#include <cstdint>
#include <windows.h>

class CltImage;
class CltRootWidget;
class CltTextButton;
class CltWidget;
class LfxLauncher;
class LfxMain;

// What a page needs of the main window; owned by the product launcher and filled while
// its window exists. Null members mean there is nothing to put buttons on.
struct LfxPageSurface
{
    CltRootWidget* root = nullptr;
    CltWidget* panel = nullptr; // the background panel, parent of the page buttons
    HFONT buttonFont = nullptr;
    const CltImage* normal = nullptr; // unselect.tga
    const CltImage* pressed = nullptr;
    const CltImage* focused = nullptr;
    // The focus memory of all pages.
    bool restoreFocus = false;
    int32_t rememberedEntry = 0;
};

class LfxPage
{
  public:
    virtual CltString GetName() = 0;
    virtual CltString GetVariant();
    virtual int Show() = 0;
    virtual int Hide(bool forward) = 0;
    virtual int OnAttach();
    virtual ~LfxPage();

    LfxLauncher* m_pLauncher = nullptr; // set by LfxMain before OnAttach
    LfxMain* m_pMain = nullptr;
};

class LfxButtonPage : public LfxPage
{
  public:
    static constexpr uint32_t kMaxEntries = 9; // commands 1 to 9
    static constexpr int32_t kFirstX = 194, kFirstY = 200, kStep = 47;
    static constexpr uint32_t kFirstId = 101;

    int Show() override;
    int Hide(bool forward) override;

    virtual void ShowTitle() = 0;
    virtual const uint32_t* GetButtonList() = 0;
    virtual void OnCommand(uint32_t command) = 0;
    virtual void RemoveButton(uint32_t command);

    // Draws the label of entry i (from 0) that Show will want, ahead of it; false past the
    // list's last entry.
    bool PrepareLabel(uint32_t i);

    // Escape runs the last command of the list; a button's WM_COMMAND runs its own.
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);

    bool IsRemoved(uint32_t command) const
    {
        return command <= kMaxEntries && m_aRemoved[command] == -1;
    }
    uint32_t ButtonCount() const { return m_nButtons; }
    CltTextButton* Button(uint32_t entry) const
    {
        return entry < kMaxEntries ? m_apButtons[entry] : nullptr;
    }

  protected:
    uint32_t m_nButtons = 0; // entries seen by the last Show, removed included
    CltTextButton* m_apButtons[kMaxEntries + 1] = {}; // null for a removed entry
    int32_t m_aRemoved[kMaxEntries + 1] = {};         // -1: the command's button is not shown

  private:
    LfxPageSurface* Surface() const;
    // The label of the entry showing text number 'text': what Show draws and PrepareLabel
    // draws ahead, so that the two find the same kept drawing.
    CltString Label(uint32_t text) const;
    CltTextButton* InitialFocus(LfxPageSurface& surface) const;
};
