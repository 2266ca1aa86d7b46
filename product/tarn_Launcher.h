// CTarnLauncher: this product's launcher class, holding the product hooks that the
// launcher core calls. One static instance registers itself during static construction.
#pragma once

#include "FrameWork/_lfx/Source/lfx_Launcher.h"

class CTarnLauncher : public LfxLauncher
{
  public:
    CTarnLauncher();
    ~CTarnLauncher() override;
    int Run() override;
    int DestroyMainWindow() override;
    int PrepareLaunch(int value, CltString& parameters, CltString& folder) override;
    int GetBuild() override;
    void AppendVersion(CltString& text) override;
};

extern CTarnLauncher g_TarnLauncher;
