// CTarnLauncher: registration and the product hooks. The window side is in
// tarn_MainWindow.cpp.
#include "product/tarn_Launcher.h"

#include "FrameWork/_lfx/Source/lfx_EnvNames.h"
#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_cult/Source/clt_Keyword.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_lfx/Source/lfx_DisplayProbe.h"
#include "FrameWork/_lfx/Source/lfx_Path.h"
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "product/tarn_Launch.h"

#include <windows.h>

#include <cstdlib>

CLT_STATIC(CLT_INIT_PRODUCT_LAUNCHER) CTarnLauncher g_TarnLauncher;

CTarnLauncher::CTarnLauncher()
{
    g_LfxMain.RegisterLauncher(this);
}

// Run has released the window state by the time the program ends; a launcher that never
// ran has none.
CTarnLauncher::~CTarnLauncher() = default;

int CTarnLauncher::GetBuild()
{
    CltString build;
    return atoi(clt_GetKeywordValue(build, "$Build: 3 $").c_str());
}

void CTarnLauncher::AppendVersion(CltString& text)
{
    AppendVersionLine(text, "CTarnLauncher", "$Version: 0 $", "$Revision: 24 $",
                      "$Modtime: 2/22/02 5:26p $");
}

// The game starts in LauncherDir\GameData with SourceDir as the process's current folder,
// after the sound-device question and the display-device test, whose boxes belong to the
// main window.
int CTarnLauncher::PrepareLaunch(int, CltString&, CltString& folder)
{
    folder = JoinPath(g_Env[lfx_env::LauncherDir], "\\GameData");
    return PrepareGameStart(m_pMain, m_hWnd) ? 1 : 0;
}
