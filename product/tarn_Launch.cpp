// What the product does around starting its programs (see tarn_Launch.h).
#include "product/tarn_Launch.h"
#include "FrameWork/_lfx/Source/lfx_Texts.h"

#include "FrameWork/_lfx/Source/lfx_EnvNames.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "FrameWork/_lfx/Source/lfx_DisplayProbe.h"
#include "FrameWork/_lfx/Source/lfx_Path.h"
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include <cstring>

bool IsDemoProduct()
{
    char appType[MAX_PATH] = {};
    CltString ini = JoinPath(g_Env[lfx_env::DataDir], "\\setup.ini");
    GetPrivateProfileStringA("Startup", "AppType", "", appType, MAX_PATH, ini.c_str());
    return strcmp(appType, "Demo") == 0;
}

int ShowProductMessage(LfxMain* main, HWND owner, uint16_t text, uint16_t caption, UINT style)
{
    return g_pfnLfxMessageBox(owner, main->GetSetupString(text).c_str(),
                              main->GetSetupString(caption).c_str(), style);
}

bool CheckBeforeStart(HWND owner, LfxMain* main)
{
    if (!main->CheckDirectSound() &&
        ShowProductMessage(main, owner, lfx_text::NoSound, lfx_text::ProductName,
                           MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDNO)
        return false;
    if (g_DisplayDevices.IsEmpty())
    {
        ShowProductMessage(main, owner, lfx_text::NoDisplay, lfx_text::ProductName,
                           MB_ICONEXCLAMATION);
        return false;
    }
    return true;
}

bool CheckDirectXViaSetup()
{
    HMODULE library =
        clt_LoadLibraryByPath(JoinPath(g_Env[lfx_env::DataDir], "\\VokSetup.dll").c_str());
    if (!library) return false;
    if (auto startup = clt_GetEntry<PFN_VokSetup_Startup>(library, "VokSetup_Startup"))
        startup(g_Env[lfx_env::DataDir].c_str());
    bool ready = false;
    if (auto check = clt_GetEntry<PFN_VokSetup_CheckDirectX>(library, "VokSetup_CheckDirectX"))
        ready = check() == 1;
    if (auto shutdown = clt_GetEntry<PFN_VokSetup_Shutdown>(library, "VokSetup_Shutdown"))
        shutdown();
    FreeLibrary(library);
    return ready;
}

bool PrepareGameStart(LfxMain* main, HWND owner)
{
    SetCurrentDirectoryA(g_Env[lfx_env::SourceDir].c_str());
    CDisplayProbe probe(JoinPath(g_Env[lfx_env::DataDir], "\\VokSetup.dll").c_str());
    return CheckBeforeStart(owner, main);
}

bool LaunchSecondProgram(LfxMain* main)
{
    if (!PrepareGameStart(main, nullptr)) return false;
    main->Execute("trnmp.exe", "", JoinPath(g_Env[lfx_env::LauncherDir], "\\GameData").c_str(),
                  true, false);
    return true;
}
