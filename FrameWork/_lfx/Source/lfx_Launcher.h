// LfxLauncher: the launcher base with the product hooks that LfxMain calls at fixed
// points. Its virtual slots keep the order below; the base behaviours are the defaults
// a product gets when it does not override a hook.
#pragma once

#include "FrameWork/_cult/Source/clt_String.h"

class LfxMain;
struct LfxPageSurface;

class LfxLauncher
{
  public:
    LfxLauncher() = default;
    virtual ~LfxLauncher();                                                         // 0
    virtual int PrepareLaunch(int value, CltString& parameters, CltString& folder); // 1
    virtual int CanInstall();                                                       // 2
    virtual int OnOption(int value);                                                // 3
    virtual int Run();                                                              // 4
    virtual int DestroyMainWindow();                                                // 5
    virtual void AppendVersion(CltString& text);                                    // 6
    virtual void OnDataDirHook();                                                   // 7
    virtual int GetBuild();                                                         // 8
    virtual void LauncherHook();                                                    // 9

    LfxMain* m_pMain = nullptr; // set by LfxMain::RegisterLauncher
    // What the pages draw on: set by the product launcher for the life of its window.
    LfxPageSurface* m_pSurface = nullptr;
};

// Appends "<name padded to 15>\t: 1.<version, 2 digits>.<revision, 4 digits> (<modtime>)\n"
// to the text; the three values are taken out of version-control keyword texts.
void AppendVersionLine(CltString& text, const char* name, const char* version, const char* revision,
                       const char* modtime);
