// The product's pages: INSTALL, LAUNCH (untagged and "INT"), HELP and OPTIONS. Each is one
// static instance that registers itself (the registration order is that of the definitions
// in tarn_Pages.cpp) and is described by one row of the page table there: its title, and
// its buttons top to bottom, each a label and a named command.
// (Windows only.)
#pragma once

#include "FrameWork/_lfx/Source/lfx_Page.h"

#include <windows.h>

// What a page button does. A button's command number is its place in its page's list.
enum class TarnCommand
{
    Install,
    Play,
    PlaySecond,
    SystemCheck,
    ReadMe,
    Troubleshooting,
    WebSite,
    Licence,
    Uninstall,
    ToHelp,
    ToOptions,
    Back
};

struct TarnPageRow;

// What the product pages share: the title and the buttons come from the page's row of the
// table, a command number is looked up there, and a button can be removed by its command.
class CTarnPage : public LfxButtonPage
{
  public:
    CltString GetName() override;
    void ShowTitle() override;
    const uint32_t* GetButtonList() override;
    void OnCommand(uint32_t command) override;

  protected:
    explicit CTarnPage(const TarnPageRow& row) : m_Row(row) {}
    virtual void Run(TarnCommand command);
    void RemoveCommand(TarnCommand command);

  private:
    const TarnPageRow& m_Row;
    uint32_t m_aLabels[kMaxEntries + 1] = {};
};

class CTarnInstallPage : public CTarnPage
{
  public:
    CTarnInstallPage();
};

class CTarnLaunchPage : public CTarnPage
{
  public:
    CTarnLaunchPage();
    int OnAttach() override;

  protected:
    struct NoRegistration
    {
    };
    explicit CTarnLaunchPage(NoRegistration);
};

class CTarnLaunchPageInt : public CTarnLaunchPage
{
  public:
    CTarnLaunchPageInt();
    // Its commands are those of the untagged page: a full product plays from either.
    CltString GetVariant() override { return "INT"; }
};

class CTarnHelpPage : public CTarnPage
{
  public:
    CTarnHelpPage();
};

class CTarnOptionsPage : public CTarnPage
{
  public:
    CTarnOptionsPage();
    int OnAttach() override;
    void ShowTitle() override;

    int32_t m_bBusy = 0; // set while the uninstall question is open

  protected:
    void Run(TarnCommand command) override;
};
