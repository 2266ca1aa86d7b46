// The product's pages: INSTALL, LAUNCH (untagged and "INT"), HELP and OPTIONS. Each is
// one static instance that registers itself; the registration order is fixed by the order
// of the definitions in tarn_Pages.cpp.
// (Windows only.)
#pragma once

#include "FrameWork/_lfx/Source/lfx_Page.h"

#include <windows.h>

class CTarnInstallPage : public LfxButtonPage
{
  public:
    CTarnInstallPage();
    CltString GetName() override { return "INSTALL"; }
    void ShowTitle() override;
    const uint32_t* GetButtonList() override;
    void OnCommand(uint32_t command) override;
};

class CTarnLaunchPage : public LfxButtonPage
{
  public:
    CTarnLaunchPage();
    CltString GetName() override { return "LAUNCH"; }
    int OnAttach() override;
    void ShowTitle() override;
    const uint32_t* GetButtonList() override;
    void OnCommand(uint32_t command) override;

  protected:
    void Play();
    struct NoRegistration
    {
    };
    explicit CTarnLaunchPage(NoRegistration) {}
};

class CTarnLaunchPageInt : public CTarnLaunchPage
{
  public:
    CTarnLaunchPageInt();
    // Its commands are those of the untagged page: a full product plays from either.
    CltString GetVariant() override { return "INT"; }
};

class CTarnHelpPage : public LfxButtonPage
{
  public:
    CTarnHelpPage();
    CltString GetName() override { return "HELP"; }
    void ShowTitle() override;
    const uint32_t* GetButtonList() override;
    void OnCommand(uint32_t command) override;
};

class CTarnOptionsPage : public LfxButtonPage
{
  public:
    CTarnOptionsPage();
    CltString GetName() override { return "OPTIONS"; }
    int OnAttach() override;
    void ShowTitle() override;
    const uint32_t* GetButtonList() override;
    void OnCommand(uint32_t command) override;

    int32_t m_bBusy = 0; // set while the uninstall question is open

  private:
    void Uninstall();
};
