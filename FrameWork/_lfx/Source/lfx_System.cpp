// LfxMain: registration, the start-up sequence, page choice and navigation, destruction.
#include "FrameWork/_lfx/Source/lfx_System.h"

#include "FrameWork/_lfx/Source/lfx_EnvNames.h"

#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Page.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include "FrameWork/_lfx/Source/lfx_Path.h"

#include "FrameWork/_cult/Source/clt_Assert.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_System.h"
#include "FrameWork/_cult/Source/clt_SystemLibrary.h"
#include "FrameWork/_cult/Source/clt_Trace.h"

#include <windows.h>

#include <dsound.h>
#include <mmsystem.h>

#define CLT_SOURCE "FrameWork/_lfx/Source/lfx_System"

// Sections and keys of setup.ini named in assertion texts.
#define SCT_FOLDERS "Folders"
#define VAL_DIRECTX_CURRENT "DirectXCurrent"
#define VAL_DIRECTX "DirectX"

LfxPageList* g_lstRegisteredPages;

CLT_STATIC(CLT_INIT_LAUNCHER_CORE) LfxMain g_LfxMain;

namespace
{
// Traces the module's prefix, then the message, as two texts.
void Trace(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;
void Trace(const char* format, ...)
{
    clt_Trace("LfxMain: ");
    va_list args;
    va_start(args, format);
    clt_TraceV(format, args);
    va_end(args);
}
} // namespace

// Deliberately leaves every registration field alone; see lfx_System.h.
LfxMain::LfxMain() : m_strVersion() {}

// Runs at the first registration, which comes before this object's constructor.
void LfxMain::EarlyConstruct()
{
    if (g_lstRegisteredPages) return;
    m_lstPages = new LfxPageList;
    g_lstRegisteredPages = new LfxPageList;
    m_lstPageStack = new LfxPageList;
    m_pTraceWinSink = new CltTraceWinSink;
    m_pVokSetup = nullptr;
    m_hSetupDll = nullptr;
    Trace("Early construction completed.\n");
}

void LfxMain::RegisterLauncher(LfxLauncher* launcher)
{
    EarlyConstruct();
    Trace("Registering launcher\n");
    m_pLauncher = launcher;
    launcher->m_pMain = this;
}

void LfxMain::RegisterPage(LfxPage* page)
{
    EarlyConstruct();
    CltString name = page->GetName();
    Trace("Registering page [%s]\n", name.c_str());
    g_lstRegisteredPages->PushBack(page);
}

void LfxMain::AppHook()
{
    if (m_pLauncher) m_pLauncher->LauncherHook();
}

int LfxMain::Init()
{
    Trace("Init started.\n");
    Trace("PreIninitializeLauncher started.\n");
    if (!PreInitializeLauncher()) return 0;
    Trace("DetermineLauncherState started.\n");
    if (!DetermineLauncherState()) return 0;
    Trace("CheckMutex started.\n");
    if (!g_Env.Has("DISABLEMUTEX", 4) && !CheckMutex()) return 0;
    Trace("PreInitializePages started.\n");
    if (!PreInitializePages()) return 0;
    Trace("PreCreateLauncher started.\n");
    if (!PreCreateLauncher()) return 0;
    Trace("Running launcher...");
    return m_pLauncher ? m_pLauncher->Run() : 0;
}

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

CltString ModulePath()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return path;
}

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

int LfxMain::GetIniString(const char* section, const char* key, CltString& out)
{
    Trace("\tGetIniString - Section [%s] Key [%s] - ", section, key);
    char value[MAX_PATH] = {};
    if (GetPrivateProfileStringA(section, key, "", value, MAX_PATH, g_Env[lfx_env::IniPath].c_str()) > 0)
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
    int32_t value =
        static_cast<int32_t>(GetPrivateProfileIntA(section, key, 123456, g_Env[lfx_env::IniPath].c_str()));
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
    g_Env.Set(lfx_env::DataDir, JoinPath(g_Env[lfx_env::LauncherDir], g_Env[lfx_env::Anchor]).c_str(), true);
    g_Env.Set(lfx_env::IniPath, JoinPath(g_Env[lfx_env::DataDir], "setup.ini").c_str(), true);
    // The asserted expressions are reported as written: keep the formatter away from them.
    // clang-format off
    CLT_ASSERT_AT(clt_IsDirectoryPresent(g_Env["DataDir"]), 173);
    CLT_ASSERT_AT(clt_IsFilePresent(g_Env["IniPath"]), 174);
    // clang-format on

    CltString company, product, version;
    GetIniString("Registry", "Company", company);
    GetIniString("Registry", "Product", product);
    GetIniString("Registry", "Version", version);
    g_Env.Set(lfx_env::RegistryFolder,
              JoinPath(JoinPath(JoinPath("Software", company), product), version).c_str(), true);
    const CltString registryFolder = g_Env[lfx_env::RegistryFolder];

    clt_RegGetDword(HKEY_LOCAL_MACHINE, registryFolder.c_str(), "Installed", m_dwInstalled);
    if (m_dwInstalled == 1) return 0;

    int32_t installDX = 0;
    m_bInstallDX = GetIniDWORD("Startup", "InstallDX", installDX) && installDX != 0;
    CltString appType;
    GetIniString("Startup", "AppType", appType);
    m_bRetail = lstrcmpiA(appType.c_str(), "RETAIL") == 0;

    CltString installDir, launcherName, directXVersion, directXUrl, strSetupDll;
    clt_RegGetString(HKEY_LOCAL_MACHINE, registryFolder.c_str(), "Install Path", installDir);
    g_Env.Set(lfx_env::InstallDir, installDir.c_str(), false);
    GetIniString("Files", "Launcher", launcherName);
    g_Env.Set(lfx_env::LauncherName, launcherName.c_str(), true);
    GetIniString("Startup", "DirectXVer", directXVersion);
    g_Env.Set(lfx_env::DirectXVersion, directXVersion.c_str(), true);
    GetIniString("Url", "DirectX", directXUrl);
    g_Env.Set(lfx_env::DirectXUrl, directXUrl.c_str(), false);
    GetIniDWORD("Startup", "Disks", m_nDisks);
    Trace("m_nDisks is [%d]\n", m_nDisks);
    GetIniString("Files", "SetupDll", strSetupDll);
    Trace("strSetupDll is [%s]\n", strSetupDll.c_str());

    // The setup library is the one library loaded from the data folder, by its full path.
    m_hSetupDll = LoadLibraryA(JoinPath(g_Env[lfx_env::DataDir], strSetupDll).c_str());
    // clang-format off
    CLT_ASSERT_AT(m_hSetupDll!=0, 227);
    SetupEntry VokSetup_GetSetup{clt_GetEntry<PFN_VokSetup_GetSetup>(
        static_cast<HMODULE>(m_hSetupDll), "VokSetup_GetSetup")};
    CLT_ASSERT_AT(VokSetup_GetSetup!=0, 230);
    CLT_ASSERT_AT(VokSetup_GetSetup(g_Env["DataDir"],&m_pVokSetup), 231);
    // clang-format on

    g_Env.Set(lfx_env::ProductName, GetSetupString(0xFF00).c_str(), true);
    g_Env.Set(lfx_env::MediaName, GetSetupString(0xFF00).c_str(), true);
    g_Env.Set(lfx_env::Language, GetSetupString(0xFFF0).c_str(), true);
    g_Env.Set(lfx_env::CharacterSet, GetSetupString(0xFF04).c_str(), true);
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
    GetIniString("Files", "Product", strFilProduct);
    Trace("strFilProduct is [%s].\n", strFilProduct.c_str());
    GetIniString("Folders", "Product", strFilDir);
    Trace("strFilDir is [%s].\n", strFilDir.c_str());
    g_Env.Set(lfx_env::ProductDir, JoinPath(g_Env[lfx_env::InstallDir], strFilDir).c_str(), true);
    g_Env.Set(lfx_env::ProductExe, JoinPath(g_Env[lfx_env::ProductDir], strFilProduct).c_str(), true);
    CltString comparing;
    g_Env.Expand(comparing,
                 "Comparing LauncherDir [$[LauncherDir]] and InstallDir [$[InstallDir]].\n");
    Trace("%s", comparing.c_str());

    CltString installedLauncher = JoinPath(g_Env[lfx_env::InstallDir], g_Env[lfx_env::LauncherName]);
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
    clt_RegGetString(HKEY_LOCAL_MACHINE, g_Env[lfx_env::RegistryFolder].c_str(), "Source Dir", source);
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
    GetIniString("Mutex", "Launcher", strLauncherMutex);
    GetIniString("Mutex", "Product", strGameMutex);
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

int LfxMain::PreInitializePages()
{
    if (!g_lstRegisteredPages || g_lstRegisteredPages->IsEmpty()) return 1;
    m_strVersion += "\nPages:\n";
    CltString list = g_Env[lfx_env::Language];
    for (LfxPage* page = FindPage(list); page; page = FindPage(list))
    {
        m_lstPages->PushBack(page);
        page->m_pLauncher = m_pLauncher;
        page->m_pMain = this;
        page->OnAttach();
        CltString name = page->GetName();
        m_strVersion += "\t";
        m_strVersion += name;
        m_strVersion += "\t";
        m_strVersion += page->GetVariant();
        m_strVersion += "\n";
        // Every page of this name leaves the registry, the chosen one included.
        for (int32_t i = g_lstRegisteredPages->Head(); i != -1;)
        {
            int32_t next = g_lstRegisteredPages->Next(i);
            CltString other = g_lstRegisteredPages->Element(i)->GetName();
            if (lstrcmpiA(other.c_str(), name.c_str()) == 0) g_lstRegisteredPages->Remove(i);
            i = next;
        }
    }
    return 1;
}

// Takes items from the front of the comma-separated list until one is the variant of a
// registered page; an exhausted list yields the empty item, which the untagged pages
// carry. When not even the empty item matches, the search ends without a page (the
// pages left then carry only variants that are no longer listed).
LfxPage* LfxMain::FindPage(CltString& list)
{
    while (g_lstRegisteredPages && !g_lstRegisteredPages->IsEmpty())
    {
        int comma = list.find(",");
        CltString item = comma < 0 ? list : CltString(list.c_str(), uint32_t(comma));
        for (int32_t i = g_lstRegisteredPages->Head(); i != -1; i = g_lstRegisteredPages->Next(i))
        {
            LfxPage* page = g_lstRegisteredPages->Element(i);
            if (lstrcmpiA(page->GetVariant().c_str(), item.c_str()) == 0) return page;
        }
        if (comma >= 0)
            list = CltString(list.c_str() + comma + 1);
        else if (!list.empty())
            list = "";
        else
            return nullptr;
    }
    return nullptr;
}

int LfxMain::PreCreateLauncher()
{
    if (m_dwOptions & LFX_OPT_SHOW_VERSION)
    {
        ShowMessage(m_strVersion.c_str(), MB_OK);
        return 0;
    }
    if (m_dwOptions & LFX_OPT_IMMEDIATE)
    {
        if (m_dwState == LFX_STATE_INSTALLED)
        {
            LaunchProduct(0, false);
            return 0;
        }
        if (m_dwState == LFX_STATE_NOT_INSTALLED)
        {
            RunInstaller();
            return 0;
        }
    }
    return 1;
}

int LfxMain::ShowMessage(const char* text, uint32_t flags)
{
    return MessageBoxA(nullptr, text, g_Env[lfx_env::ProductName].c_str(), flags);
}

void(WINAPI* g_pfnLfxGlobalMemoryStatus)(LPMEMORYSTATUS) = GlobalMemoryStatus;
BOOL(WINAPI* g_pfnLfxExitWindowsEx)(UINT, DWORD) = ExitWindowsEx;

int LfxMain::PlaySoundByName(const CltString& name, bool wait)
{
    PlaySoundA(nullptr, static_cast<HMODULE>(clt_GetState()->m_hInstance), SND_PURGE);
    if (!name.empty())
    {
        CltString file = JoinPath(g_Env[lfx_env::DataDir], name) + ".wav";
        PlaySoundA(file.c_str(), nullptr, SND_FILENAME | (wait ? SND_SYNC : SND_ASYNC));
    }
    return 1;
}

int LfxMain::Execute(const char* file, const char* parameters, const char* folder,
                     bool reportFailure, bool wait)
{
    if (clt_ShellExecute(file, parameters, folder, wait)) return 1;
    if (reportFailure) ShowMessage(GetSetupString(0x5007).c_str(), MB_ICONHAND);
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
    return Execute(g_Env[lfx_env::ProductExe].c_str(), parameters.c_str(), folder.c_str(), true, wait);
}

int LfxMain::RunInstaller()
{
    if (m_pLauncher && !m_pLauncher->CanInstall()) return 0;
    CltString installerName, parameters;
    GetIniString("Files", "Installer", installerName);
    CltString installer = JoinPath(g_Env[lfx_env::DataDir], installerName);
    GetIniString("Files", "CmdLine", parameters);
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
    // and its arguments.
    SHELLEXECUTEINFOA info = {};
    info.cbSize = sizeof info;
    info.fMask = SEE_MASK_FLAG_NO_UI; // a failed start is silent
    info.lpVerb = "open";
    info.lpFile = strUninstall.c_str();
    info.lpParameters = "";
    info.lpDirectory = "C:\\";
    info.nShow = SW_SHOWNORMAL;
    if (!ShellExecuteExA(&info)) return 0;
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
    GetIniString("Documentation", "Help", help);
    file = JoinPath(g_Env[lfx_env::LauncherDir], help);
    WinHelpA(nullptr, file.c_str(), command, data);
    return 1;
}

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
    if (GetIniDWORD("SysCheck", "RAM", ram) &&
        Figure32(status.dwTotalPhys) < (uint32_t(ram) - 1u) * 1048576u)
        return ShowMessage(GetSetupString(0x5008).c_str(), MB_YESNO | MB_ICONINFORMATION) == IDYES;
    if (GetIniDWORD("Buffer", "Product", buffer) &&
        Figure32(status.dwAvailPageFile) < uint32_t(buffer) * 1048576u)
        return ShowMessage(GetSetupString(0x5009).c_str(), MB_YESNO | MB_ICONINFORMATION) == IDYES;
    return 1;
}

int LfxMain::CheckDirectX()
{
    int state = m_pVokSetup ? m_pVokSetup->GetDirectXState() : 0;
    if (state == VOK_DIRECTX_READY) return 1;
    if (state == VOK_DIRECTX_STOP) return 0;
    if (!m_bInstallDX)
    {
        ShowMessage(GetSetupString(0x5012).c_str(), MB_ICONINFORMATION);
        return 0;
    }
    if (ShowMessage(GetSetupString(0x5006).c_str(), MB_YESNO | MB_ICONQUESTION) != IDYES) return 0;
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
        MessageBoxA(GetFocus(), GetSetupString(0xD047).c_str(), GetSetupString(0x7800).c_str(),
                    MB_OK);
        return 0;
    }
    if (m_pVokSetup->InstallDirectX(folder.c_str()) == 0)
        return m_pVokSetup->GetDirectXState() != 0 ? 1 : 0;
    if (MessageBoxA(GetFocus(), GetSetupString(0x7882).c_str(), GetSetupString(0x7800).c_str(),
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
        ShowMessage(GetSetupString(0x5007).c_str(), MB_TASKMODAL | MB_ICONHAND);
        return 0;
    }
    using CreateFn = HRESULT(WINAPI*)(LPCGUID, LPDIRECTSOUND*, LPUNKNOWN);
    auto create = clt_GetEntry<CreateFn>(dsound, "DirectSoundCreate");
    if (!create)
    {
        ShowMessage(GetSetupString(0x5007).c_str(), MB_TASKMODAL | MB_ICONHAND);
        FreeLibrary(dsound);
        return 0;
    }
    LPDIRECTSOUND device = nullptr;
    if (FAILED(create(nullptr, &device, nullptr)) || !device)
    {
        int answer = ShowMessage(GetSetupString(0x5013).c_str(),
                                 MB_TASKMODAL | MB_ICONQUESTION | MB_YESNO | MB_DEFBUTTON2);
        FreeLibrary(dsound);
        return answer == IDYES;
    }
    int result = 1;
    if (FAILED(device->SetCooperativeLevel(GetDesktopWindow(), DSSCL_PRIORITY)))
    {
        ShowMessage(GetSetupString(0x5013).c_str(), MB_TASKMODAL | MB_ICONHAND);
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
    GetIniString("Startup", "Data", label);
    UINT message = (m_nDisks == 0 || m_nDisks == 1) ? 0x5002 : 0x5003;
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
                CltString launcher = JoinPath(g_Env[lfx_env::SourceDir], g_Env[lfx_env::LauncherName]);
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

int LfxMain::ShowPage(const char* name)
{
    CltString wanted(name);
    for (int32_t i = m_lstPages->Head(); i != -1; i = m_lstPages->Next(i))
    {
        LfxPage* page = m_lstPages->Element(i);
        if (!(page->GetName() == wanted)) continue;
        if (LfxPage* current = GetCurrentPage()) current->Hide(true);
        page->Show();
        m_lstPageStack->PushFront(page);
        return 1;
    }
    return 0;
}

int LfxMain::GoBack()
{
    LfxPage* top = GetCurrentPage();
    if (!top) return 1;
    top->Hide(false);
    m_lstPageStack->Remove(m_lstPageStack->Head());
    if (LfxPage* below = GetCurrentPage())
        below->Show();
    else if (m_pLauncher)
        m_pLauncher->DestroyMainWindow();
    return 1;
}

LfxPage* LfxMain::GetCurrentPage() const
{
    if (!m_lstPageStack || m_lstPageStack->IsEmpty()) return nullptr;
    return m_lstPageStack->Element(m_lstPageStack->Head());
}

LfxMain::~LfxMain()
{
    if (m_hMutex) CloseHandle(m_hMutex);
    if (m_pVokSetup) m_pVokSetup->Release();
    if (m_hSetupDll) FreeLibrary(static_cast<HMODULE>(m_hSetupDll));
    delete m_lstPageStack;
    delete m_lstPages;
    delete g_lstRegisteredPages;
    m_lstPageStack = m_lstPages = g_lstRegisteredPages = nullptr;
    Trace("Destruction completed.\n");
    delete m_pTraceWinSink;
    m_pTraceWinSink = nullptr;
    // m_strVersion is released by its own destructor, then CltApp traces its part.
}
