// LfxPage: the page interface that LfxMain drives, and LfxButtonPage, the base of the
// product's pages: a page names itself, may carry a variant tag, lists its buttons as
// setup-text numbers (ended by 0, command = position + 1) and carries out commands.
//
// Pages are static objects that register with LfxMain from their constructors and are
// never destroyed by anyone else.
#pragma once

#include "FrameWork/_cult/Source/clt_String.h"

#include <cstdint>

class LfxLauncher;
class LfxMain;

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

    int Show() override;
    int Hide(bool forward) override;

    virtual void ShowTitle() = 0;
    virtual const uint32_t* GetButtonList() = 0;
    virtual void OnCommand(uint32_t command) = 0;
    virtual void RemoveButton(uint32_t command);

    bool IsRemoved(uint32_t command) const
    {
        return command <= kMaxEntries && m_aRemoved[command] == -1;
    }

  protected:
    uint32_t m_nButtons = 0;                  // entries seen by the last Show, removed included
    int32_t m_aRemoved[kMaxEntries + 1] = {}; // -1: the command's button is not shown
};
