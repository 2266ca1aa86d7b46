// LfxMain's launcher state: installed or not, the hand-over to the installed launcher, and
// the single-instance rule (DetermineLauncherState, CheckMutex).
#include "FrameWork/_lfx/Source/lfx_System.h"

#include "FrameWork/_lfx/Source/lfx_Core.h"
#include "FrameWork/_lfx/Source/lfx_EnvNames.h"
#include "FrameWork/_lfx/Source/lfx_Path.h"

#include "FrameWork/_cult/Source/clt_Assert.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_System.h"
#include "FrameWork/_cult/Source/clt_Trace.h"

#include <windows.h>

using lfx_core::ModulePath;
using lfx_core::Trace;

namespace
{
// True when both paths name one existing file, however they are spelled.
bool IsSameFile(const char* a, const char* b)
{
    auto identify = [](const char* path, BY_HANDLE_FILE_INFORMATION& info)
    {
        HANDLE file = CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                  nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) return false;
        bool ok = GetFileInformationByHandle(file, &info) != 0;
        CloseHandle(file);
        return ok;
    };
    BY_HANDLE_FILE_INFORMATION ia, ib;
    return identify(a, ia) && identify(b, ib) &&
           ia.dwVolumeSerialNumber == ib.dwVolumeSerialNumber &&
           ia.nFileIndexHigh == ib.nFileIndexHigh && ia.nFileIndexLow == ib.nFileIndexLow;
}
} // namespace

// True when the launcher in the installation folder is this very program, reached through
// another spelling of its folder: handing over to it would start a chain of launchers.
bool LfxMain::IsInstalledLauncherRunning(const CltString& installedLauncher)
{
    return IsSameFile(installedLauncher.c_str(), ModulePath().c_str());
}

int LfxMain::DetermineLauncherState()
{
    if (m_dwInstalled != 2 || g_Env[lfx_env::InstallDir].empty())
    {
        m_dwState = LFX_STATE_NOT_INSTALLED;
        g_Env.Set(lfx_env::SourceDir, g_Env[lfx_env::LauncherDir].c_str(), true);
        Trace("m_dwState is [%d]\n", m_dwState);
        return 1;
    }
    Trace("Product is installed.\n");
    CltString strFilProduct, strFilDir;
    GetIniString(lfx_ini::FilesProduct, strFilProduct);
    Trace("strFilProduct is [%s].\n", strFilProduct.c_str());
    GetIniString(lfx_ini::FoldersProduct, strFilDir);
    Trace("strFilDir is [%s].\n", strFilDir.c_str());
    g_Env.Set(lfx_env::ProductDir, JoinPath(g_Env[lfx_env::InstallDir], strFilDir).c_str(), true);
    g_Env.Set(lfx_env::ProductExe, JoinPath(g_Env[lfx_env::ProductDir], strFilProduct).c_str(),
              true);
    CltString comparing;
    g_Env.Expand(comparing,
                 "Comparing LauncherDir [$[LauncherDir]] and InstallDir [$[InstallDir]].\n");
    Trace("%s", comparing.c_str());

    CltString installedLauncher =
        JoinPath(g_Env[lfx_env::InstallDir], g_Env[lfx_env::LauncherName]);
    if (clt_IsFilePresent(installedLauncher) &&
        lstrcmpiA(g_Env[lfx_env::LauncherDir].c_str(), g_Env[lfx_env::InstallDir].c_str()) != 0 &&
        !(m_dwOptions & LFX_OPT_NO_HANDOVER) && !IsInstalledLauncherRunning(installedLauncher))
    {
        Trace("Launcher is running from CD. Transferring to HD.\n");
        Execute(installedLauncher.c_str(), "", g_Env[lfx_env::InstallDir].c_str(), true, false);
        return 0;
    }
    Trace("Launcher is running from HD or in debug mode.\n");
    m_dwState = g_Env.Has("UNINSTALL", 1) ? LFX_STATE_UNINSTALL : LFX_STATE_INSTALLED;

    CltString source;
    clt_RegGetString(HKEY_LOCAL_MACHINE, g_Env[lfx_env::RegistryFolder].c_str(), "Source Dir",
                     source);
    // An installation that did not record where it came from counts as installed from its
    // own folder, so that the launcher still starts.
    if (source.empty()) source = g_Env[lfx_env::InstallDir];
    g_Env.Set(lfx_env::SourceDir, NormaliseFolder(source).c_str(), true);
    Trace("m_dwState is [%d]\n", m_dwState);
    return 1;
}

int LfxMain::CheckMutex()
{
    CltString strLauncherMutex, strGameMutex;
    GetIniString(lfx_ini::MutexLauncher, strLauncherMutex);
    GetIniString(lfx_ini::MutexProduct, strGameMutex);
    Trace("strLauncherMutex is [%s].\n", strLauncherMutex.c_str());
    Trace("strGameMutex is [%s].\n", strGameMutex.c_str());
    // clang-format off
    CLT_ASSERT_AT(!strLauncherMutex.empty(), 336);
    CLT_ASSERT_AT(!strGameMutex.empty(), 337);
    // clang-format on

    // The game's mutex is only tested: created and closed at once, never held.
    HANDLE game = CreateMutexA(nullptr, TRUE, strGameMutex.c_str());
    DWORD error = GetLastError();
    if (game) CloseHandle(game);
    if (error == ERROR_ALREADY_EXISTS)
    {
        Trace("Game is already running.\n");
        return 0;
    }
    m_hMutex = CreateMutexA(nullptr, TRUE, strLauncherMutex.c_str());
    if (GetLastError() == ERROR_ALREADY_EXISTS)
    {
        Trace("Launcher is already running.\n");
        return 0;
    }
    Trace("Launcher, Game are not running.\n");
    return 1;
}
