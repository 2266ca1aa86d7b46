// LfxMain's actions: message boxes, sounds, and the programs it starts (the game, the
// installer, the uninstaller, the system check, documents, the web page, help).
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/Source/lfx_Texts.h"

#include "FrameWork/_lfx/Source/lfx_Core.h"
#include "FrameWork/_lfx/Source/lfx_EnvNames.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Path.h"

#include "FrameWork/_cult/Source/clt_Assert.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_System.h"
#include "FrameWork/_cult/Source/clt_SystemEntries.h"
#include "FrameWork/_cult/Source/clt_Trace.h"

#include <windows.h>

#include <mmsystem.h>

int LfxMain::ShowMessage(const char* text, uint32_t flags)
{
    return g_pfnLfxMessageBox(nullptr, text, g_Env[lfx_env::ProductName].c_str(), flags);
}

int LfxMain::PlaySoundByName(const CltString& name, bool wait)
{
    clt_PlaySound(nullptr, static_cast<HMODULE>(clt_GetState()->m_hInstance), SND_PURGE);
    if (!name.empty())
    {
        CltString file = JoinPath(g_Env[lfx_env::DataDir], name) + ".wav";
        clt_PlaySound(file.c_str(), nullptr, SND_FILENAME | (wait ? SND_SYNC : SND_ASYNC));
    }
    return 1;
}

int LfxMain::Execute(const char* file, const char* parameters, const char* folder,
                     bool reportFailure, bool wait)
{
    if (clt_ShellExecute(file, parameters, folder, wait)) return 1;
    if (reportFailure) ShowMessage(GetSetupString(lfx_text::CannotStart).c_str(), MB_ICONHAND);
    return 0;
}

int LfxMain::LaunchProduct(int value, bool wait)
{
    if (!CheckMemory()) return 0;
    int directX = CheckDirectX();
    if (directX == -1) return 1;
    if (directX == 0) return 0;
    CltString parameters;
    CltString folder = g_Env[lfx_env::ProductDir];
    if (folder.length() > 3 && folder.c_str()[folder.length() - 1] == '\\')
        folder = folder.mid(0, int(folder.length()) - 1);
    if (m_pLauncher && !m_pLauncher->PrepareLaunch(value, parameters, folder)) return 0;
    return Execute(g_Env[lfx_env::ProductExe].c_str(), parameters.c_str(), folder.c_str(), true,
                   wait);
}

int LfxMain::RunInstaller()
{
    if (m_pLauncher && !m_pLauncher->CanInstall()) return 0;
    CltString installerName, parameters;
    GetIniString(lfx_ini::FilesInstaller, installerName);
    CltString installer = JoinPath(g_Env[lfx_env::DataDir], installerName);
    GetIniString(lfx_ini::FilesCmdLine, parameters);
    if (!CheckMedia()) return 0;
    return Execute(installer.c_str(), parameters.c_str(), g_Env[lfx_env::LauncherDir].c_str(), true,
                   false);
}

int LfxMain::RunUninstaller()
{
    CltString strUninstall;
    clt_RegGetString(HKEY_LOCAL_MACHINE, g_Env[lfx_env::RegistryFolder].c_str(), "UninstallString",
                     strUninstall);
    // clang-format off
    CLT_ASSERT_AT(!strUninstall.empty(), 1044);
    // clang-format on
    // The whole command goes to the shell as the file: it is not split into a program
    // and its arguments. A failed start is silent.
    if (!clt_ShellExecute(strUninstall.c_str(), "", "C:\\", false)) return 0;
    if (m_pLauncher) m_pLauncher->DestroyMainWindow();
    return 1;
}

int LfxMain::RunSysCheck()
{
    Execute("Syscheck.exe", "", g_Env[lfx_env::DataDir].c_str(), true, true);
    return 1;
}

int LfxMain::OpenUrl(const char* key)
{
    return Execute("Url.exe", key, g_Env[lfx_env::DataDir].c_str(), true, false);
}

int LfxMain::OpenDocument(const char* key)
{
    return Execute("Doc.exe", key, g_Env[lfx_env::DataDir].c_str(), true, false);
}

int LfxMain::CallWinHelp(uint32_t command, uintptr_t data)
{
    CltString help, file;
    GetIniString(lfx_ini::DocumentationHelp, help);
    file = JoinPath(g_Env[lfx_env::LauncherDir], help);
    WinHelpA(nullptr, file.c_str(), command, data);
    return 1;
}
