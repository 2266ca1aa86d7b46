// LfxMain's system checks: memory and paging space, DirectX (with its installation and
// the restart), the sound device, and the installation media.
#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/Source/lfx_Texts.h"

#include "FrameWork/_lfx/Source/lfx_Core.h"
#include "FrameWork/_lfx/Source/lfx_EnvNames.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Path.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include "FrameWork/_cult/Source/clt_Assert.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_System.h"
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "FrameWork/_cult/Source/clt_Trace.h"

#include <windows.h>

#include <dsound.h>

// Sections and keys of setup.ini named in assertion texts.
#define SCT_FOLDERS "Folders"
#define VAL_DIRECTX_CURRENT "DirectXCurrent"
#define VAL_DIRECTX "DirectX"

void(WINAPI* g_pfnLfxGlobalMemoryStatus)(LPMEMORYSTATUS) = GlobalMemoryStatus;
BOOL(WINAPI* g_pfnLfxExitWindowsEx)(UINT, DWORD) = ExitWindowsEx;
int(WINAPI* g_pfnLfxMessageBox)(HWND, LPCSTR, LPCSTR, UINT) = MessageBoxA;

namespace
{
// The memory figures as 32-bit numbers: larger ones read as 4 GiB - 1, as a 32-bit
// program sees them.
uint32_t Figure32(SIZE_T value)
{
    return value > 0xFFFFFFFFu ? 0xFFFFFFFFu : uint32_t(value);
}
} // namespace

// Thresholds in MiB, compared in unsigned 32-bit arithmetic: RAM=0 makes the bound
// (0 - 1) MiB, just under 4 GiB.
int LfxMain::CheckMemory()
{
    MEMORYSTATUS status = {};
    status.dwLength = sizeof status;
    g_pfnLfxGlobalMemoryStatus(&status);
    int32_t ram = 0, buffer = 0;
    if (GetIniDWORD(lfx_ini::SysCheckRAM, ram) &&
        Figure32(status.dwTotalPhys) < (uint32_t(ram) - 1u) * 1048576u)
        return ShowMessage(GetSetupString(lfx_text::LowMemory).c_str(),
                           MB_YESNO | MB_ICONINFORMATION) == IDYES;
    if (GetIniDWORD(lfx_ini::BufferProduct, buffer) &&
        Figure32(status.dwAvailPageFile) < uint32_t(buffer) * 1048576u)
        return ShowMessage(GetSetupString(lfx_text::LowPaging).c_str(),
                           MB_YESNO | MB_ICONINFORMATION) == IDYES;
    return 1;
}

int LfxMain::CheckDirectX()
{
    int state = m_pVokSetup ? m_pVokSetup->GetDirectXState() : 0;
    if (state == VOK_DIRECTX_READY) return 1;
    if (state == VOK_DIRECTX_STOP) return 0;
    if (!m_bInstallDX)
    {
        ShowMessage(GetSetupString(lfx_text::NoDirectX).c_str(), MB_ICONINFORMATION);
        return 0;
    }
    if (ShowMessage(GetSetupString(lfx_text::OfferDirectX).c_str(), MB_YESNO | MB_ICONQUESTION) !=
        IDYES)
        return 0;
    CltString strDirectX;
    // clang-format off
    CLT_ASSERT_AT(GetIniString(SCT_FOLDERS,VAL_DIRECTX_CURRENT,strDirectX), 1181);
    // clang-format on
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (!GetVersionExA(&version)) return 0;
    if (version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS && version.dwMajorVersion == 4 &&
        version.dwMinorVersion == 0)
    {
        // clang-format off
        CLT_ASSERT_AT(GetIniString(SCT_FOLDERS,VAL_DIRECTX,strDirectX), 1198);
        // clang-format on
    }
    CltString folder = JoinPath(g_Env[lfx_env::SourceDir], strDirectX);
    if (!clt_IsDirectoryPresent(folder))
    {
        g_pfnLfxMessageBox(GetFocus(), GetSetupString(lfx_text::NoDirectXFolder).c_str(),
                           GetSetupString(lfx_text::DirectXCaption).c_str(), MB_OK);
        return 0;
    }
    if (m_pVokSetup->InstallDirectX(folder.c_str()) == 0)
        return m_pVokSetup->GetDirectXState() != 0 ? 1 : 0;
    if (g_pfnLfxMessageBox(GetFocus(), GetSetupString(lfx_text::RestartQuestion).c_str(),
                           GetSetupString(lfx_text::DirectXCaption).c_str(),
                           MB_YESNO | MB_ICONQUESTION) != IDYES)
        return 0;
    clt_EnablePrivilege("SeShutdownPrivilege"); // without it the restart is refused
    g_pfnLfxExitWindowsEx(EWX_REBOOT | EWX_FORCE, 0);
    if (m_pLauncher) m_pLauncher->DestroyMainWindow();
    return -1;
}

int LfxMain::CheckDirectSound()
{
    HMODULE dsound = clt_LoadSystemLibrary("DSOUND.DLL");
    if (!dsound)
    {
        ShowMessage(GetSetupString(lfx_text::CannotStart).c_str(), MB_TASKMODAL | MB_ICONHAND);
        return 0;
    }
    using CreateFn = HRESULT(WINAPI*)(LPCGUID, LPDIRECTSOUND*, LPUNKNOWN);
    auto create = clt_GetEntry<CreateFn>(dsound, "DirectSoundCreate");
    if (!create)
    {
        ShowMessage(GetSetupString(lfx_text::CannotStart).c_str(), MB_TASKMODAL | MB_ICONHAND);
        FreeLibrary(dsound);
        return 0;
    }
    LPDIRECTSOUND device = nullptr;
    if (FAILED(create(nullptr, &device, nullptr)) || !device)
    {
        int answer = ShowMessage(GetSetupString(lfx_text::NoSound).c_str(),
                                 MB_TASKMODAL | MB_ICONQUESTION | MB_YESNO | MB_DEFBUTTON2);
        FreeLibrary(dsound);
        return answer == IDYES;
    }
    int result = 1;
    if (FAILED(device->SetCooperativeLevel(GetDesktopWindow(), DSSCL_PRIORITY)))
    {
        ShowMessage(GetSetupString(lfx_text::NoSound).c_str(), MB_TASKMODAL | MB_ICONHAND);
        result = 0;
    }
    device->Release();
    FreeLibrary(dsound);
    return result;
}

// Retail products ask for their disc until the volume in SourceDir's drive carries the
// label [Startup] Data (as a prefix) and holds this launcher, or the user gives up.
int LfxMain::CheckMedia()
{
    if (!m_bRetail) return 1;
    CltString label;
    GetIniString(lfx_ini::StartupData, label);
    UINT message =
        (m_nDisks == 0 || m_nDisks == 1) ? lfx_text::InsertDisc : lfx_text::InsertFirstDisc;
    for (;;)
    {
        CltString root = g_Env[lfx_env::SourceDir];
        if (root.length() < 3)
            root += "\\";
        else if (root.length() > 3)
            root = root.mid(0, 3);
        char volume[MAX_PATH] = {};
        if (GetVolumeInformationA(root.c_str(), volume, MAX_PATH, nullptr, nullptr, nullptr,
                                  nullptr, 0))
        {
            if (label.length() < uint32_t(lstrlenA(volume))) volume[label.length()] = 0;
            if (lstrcmpiA(volume, label.c_str()) == 0)
            {
                CltString launcher =
                    JoinPath(g_Env[lfx_env::SourceDir], g_Env[lfx_env::LauncherName]);
                if (lstrcmpiA(launcher.c_str(), g_Env[lfx_env::ModuleFileName].c_str()) == 0 ||
                    clt_IsFilePresent(launcher))
                    return 1;
            }
        }
        if (ShowMessage(GetSetupString(uint16_t(message)).c_str(),
                        MB_TASKMODAL | MB_ICONEXCLAMATION | MB_OKCANCEL) != IDOK)
            return 0;
    }
}
