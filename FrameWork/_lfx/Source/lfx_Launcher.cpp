// The launcher base's default hooks.
#include "FrameWork/_lfx/Source/lfx_Launcher.h"

#include "FrameWork/_cult/Source/clt_Keyword.h"

#include <cstdlib>

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

void AppendVersionLine(CltString& text, const char* name, const char* version, const char* revision,
                       const char* modtime)
{
    CltString v, r, m, line;
    line.format("%-15s\t: 1.%02d.%04d (%s)\n", name, atoi(clt_GetKeywordValue(v, version).c_str()),
                atoi(clt_GetKeywordValue(r, revision).c_str()),
                clt_GetKeywordValue(m, modtime).c_str());
    if (!line.empty()) text += line;
}
