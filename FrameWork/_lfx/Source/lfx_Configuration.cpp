// LfxMain's configuration: setup.ini, the registry key, the folders, the setup library and
// its texts, and the version text (PreInitializeLauncher).
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

using lfx_core::ModulePath;
using lfx_core::Trace;

namespace
{
// The setup library's entry, callable with the environment's texts and compared with 0
// like the function pointer it holds.
struct SetupEntry
{
    PFN_VokSetup_GetSetup pfn;
    int operator()(const CltString& dataDir, CVokSetup** ppSetup) const
    {
        return pfn(dataDir.c_str(), ppSetup);
    }
    friend bool operator!=(const SetupEntry& entry, int) { return entry.pfn != nullptr; }
};
} // namespace

int LfxMain::GetIniString(const char* section, const char* key, CltString& out)
{
    Trace("\tGetIniString - Section [%s] Key [%s] - ", section, key);
    char value[MAX_PATH] = {};
    if (GetPrivateProfileStringA(section, key, "", value, MAX_PATH,
                                 g_Env[lfx_env::IniPath].c_str()) > 0)
    {
        clt_Trace("Success [%s]\n", value);
        out = value;
        return 1;
    }
    clt_Trace("Fail\n");
    return 0;
}

int LfxMain::GetIniDWORD(const char* section, const char* key, int32_t& out)
{
    Trace("\tGetIniDWORD - Section [%s] Key [%s] - ", section, key);
    // 123456 stands for a missing key, so a key that holds exactly 123456 reads as missing.
    int32_t value = static_cast<int32_t>(
        GetPrivateProfileIntA(section, key, 123456, g_Env[lfx_env::IniPath].c_str()));
    if (value == 123456)
    {
        clt_Trace("Fail\n");
        return 0;
    }
    clt_Trace("Success [%d]\n", value);
    out = value;
    return 1;
}

CltString LfxMain::GetSetupString(uint16_t number)
{
    CltString text;
    if (m_pVokSetup) g_Env.Expand(text, m_pVokSetup->GetString(number));
    return text;
}

CltString LfxMain::GetLauncherDir()
{
    if (m_dwOptions & LFX_OPT_DEBUG_DIR)
    {
        const CltString& debug = g_Env[lfx_env::Debug];
        if (!debug.empty()) return debug;
        char current[MAX_PATH] = {};
        GetCurrentDirectoryA(MAX_PATH, current);
        return current;
    }
    CltString path = ModulePath();
    int last = path.find_last("\\");
    if (last < 0) return path;
    // The root of a drive keeps its backslash: C:\ for C:\Launcher.exe.
    int length = last == path.find("\\") ? last + 1 : last;
    return path.mid(0, length);
}

int LfxMain::PreInitializeLauncher()
{
    m_dwState = 0;
    m_dwOptions =
        g_Env.Has("DEBUG", 0x0A) | g_Env.Has("I", 4) | g_Env.Has("V", 3) | g_Env.Has("Y", 2);
    Trace("m_dwOptions is [0x%08x]\n", m_dwOptions);
    m_hMutex = nullptr;
    g_Env.Set(lfx_env::LauncherDir, GetLauncherDir().c_str(), true);
    if (!g_Env.Has("ANCHOR", 1)) g_Env.Set(lfx_env::Anchor, "Install", true);
    if (m_pLauncher) m_pLauncher->OnDataDirHook();
    g_Env.Set(lfx_env::DataDir,
              JoinPath(g_Env[lfx_env::LauncherDir], g_Env[lfx_env::Anchor]).c_str(), true);
    g_Env.Set(lfx_env::IniPath, JoinPath(g_Env[lfx_env::DataDir], "setup.ini").c_str(), true);
    // The asserted expressions are reported as written: keep the formatter away from them.
    // clang-format off
    CLT_ASSERT_AT(clt_IsDirectoryPresent(g_Env["DataDir"]), 173);
    CLT_ASSERT_AT(clt_IsFilePresent(g_Env["IniPath"]), 174);
    // clang-format on

    CltString company, product, version;
    GetIniString(lfx_ini::RegistryCompany, company);
    GetIniString(lfx_ini::RegistryProduct, product);
    GetIniString(lfx_ini::RegistryVersion, version);
    g_Env.Set(lfx_env::RegistryFolder,
              JoinPath(JoinPath(JoinPath("Software", company), product), version).c_str(), true);
    const CltString registryFolder = g_Env[lfx_env::RegistryFolder];

    clt_RegGetDword(HKEY_LOCAL_MACHINE, registryFolder.c_str(), "Installed", m_dwInstalled);
    if (m_dwInstalled == 1) return 0;

    int32_t installDX = 0;
    m_bInstallDX = GetIniDWORD(lfx_ini::StartupInstallDX, installDX) && installDX != 0;
    CltString appType;
    GetIniString(lfx_ini::StartupAppType, appType);
    m_bRetail = lstrcmpiA(appType.c_str(), "RETAIL") == 0;

    CltString installDir, launcherName, directXVersion, directXUrl, strSetupDll;
    clt_RegGetString(HKEY_LOCAL_MACHINE, registryFolder.c_str(), "Install Path", installDir);
    g_Env.Set(lfx_env::InstallDir, installDir.c_str(), false);
    GetIniString(lfx_ini::FilesLauncher, launcherName);
    g_Env.Set(lfx_env::LauncherName, launcherName.c_str(), true);
    GetIniString(lfx_ini::StartupDirectXVer, directXVersion);
    g_Env.Set(lfx_env::DirectXVersion, directXVersion.c_str(), true);
    GetIniString(lfx_ini::UrlDirectX, directXUrl);
    g_Env.Set(lfx_env::DirectXUrl, directXUrl.c_str(), false);
    GetIniDWORD(lfx_ini::StartupDisks, m_nDisks);
    Trace("m_nDisks is [%d]\n", m_nDisks);
    GetIniString(lfx_ini::FilesSetupDll, strSetupDll);
    Trace("strSetupDll is [%s]\n", strSetupDll.c_str());

    // The setup library is the one library loaded from the data folder, by its full path.
    m_hSetupDll = clt_LoadLibraryByPath(JoinPath(g_Env[lfx_env::DataDir], strSetupDll).c_str());
    // clang-format off
    CLT_ASSERT_AT(m_hSetupDll!=0, 227);
    SetupEntry VokSetup_GetSetup{clt_GetEntry<PFN_VokSetup_GetSetup>(
        static_cast<HMODULE>(m_hSetupDll), "VokSetup_GetSetup")};
    CLT_ASSERT_AT(VokSetup_GetSetup!=0, 230);
    CLT_ASSERT_AT(VokSetup_GetSetup(g_Env["DataDir"],&m_pVokSetup), 231);
    // clang-format on

    g_Env.Set(lfx_env::ProductName, GetSetupString(lfx_text::ProductName).c_str(), true);
    g_Env.Set(lfx_env::MediaName, GetSetupString(lfx_text::ProductName).c_str(), true);
    g_Env.Set(lfx_env::Language, GetSetupString(lfx_text::Languages).c_str(), true);
    g_Env.Set(lfx_env::CharacterSet, GetSetupString(lfx_text::CharacterSet).c_str(), true);
    BuildVersionText();
    Trace("PreInitializeLauncher completed.\n");
    return 1;
}

// "<executable> (Build NNNN)", a blank line, then one version line per module.
void LfxMain::BuildVersionText()
{
    CltString path = ModulePath();
    int last = path.find_last("\\");
    bool named = last >= 0 && uint32_t(last) + 1 < path.length();
    CltString name = named ? path.mid(last + 1) : path;
    m_strVersion.format("%s (Build %04d)\n\n", name.c_str(),
                        m_pLauncher ? m_pLauncher->GetBuild() : 0);
    AppendVersionLine(m_strVersion, "LfxMain", "$Version: 3 $", "$Revision: 114 $",
                      "$Modtime: 2/12/02 5:05p $");
    if (m_pLauncher) m_pLauncher->AppendVersion(m_strVersion);
}
