// The launcher base's default hooks.
#include "lfx_Launcher.h"

LfxLauncher::~LfxLauncher() = default;
int LfxLauncher::PrepareLaunch(int, CltString&, CltString&)
{
    return 1;
}
int LfxLauncher::CanInstall()
{
    return 1;
}
int LfxLauncher::OnOption(int)
{
    return 1;
}
int LfxLauncher::Run()
{
    return 1;
}
int LfxLauncher::DestroyMainWindow()
{
    return 1;
}
void LfxLauncher::AppendVersion(CltString&) {}
void LfxLauncher::OnDataDirHook() {}
int LfxLauncher::GetBuild()
{
    return 0;
}
void LfxLauncher::LauncherHook() {}
