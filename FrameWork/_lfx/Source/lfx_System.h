// LfxMain: the launcher core and the program's single application object.
//
// One static instance exists. The product launcher and the pages register with it
// during static construction, before its own constructor runs; its storage is zero
// until then, and the constructor touches only the CltApp part and m_strVersion, so the
// lists, the launcher pointer and the TraceWin sink made by early construction survive.
// Init runs the start-up steps in a fixed order; any step may end start-up, and every
// path ends with exit code 0.
// (Windows only.)
#pragma once

#include "FrameWork/_lfx/Source/lfx_IniKeys.h"

#include "FrameWork/_cult/Source/clt_App.h"
#include "FrameWork/_cult/Source/clt_IndexList.h"
#include "FrameWork/_cult/Source/clt_String.h"

#include <cstdint>
#include <windows.h>

class CltTraceWinSink;
class CVokSetup;
class LfxLauncher;
class LfxPage;

using LfxPageList = CltIndexList<LfxPage*>;

// Option bits of m_dwOptions, set from the command-line switches.
constexpr uint32_t LFX_OPT_SHOW_VERSION = 0x01; // V
constexpr uint32_t LFX_OPT_NO_HANDOVER = 0x02;  // DEBUG, V, Y
constexpr uint32_t LFX_OPT_IMMEDIATE = 0x04;    // I
constexpr uint32_t LFX_OPT_DEBUG_DIR = 0x08;    // DEBUG

// Launcher states of m_dwState.
constexpr uint32_t LFX_STATE_INSTALLED = 1;
constexpr uint32_t LFX_STATE_NOT_INSTALLED = 2;
constexpr uint32_t LFX_STATE_UNINSTALL = 3;

class LfxMain : public CltApp
{
  public:
    LfxMain();
    ~LfxMain() override;
    int Init() override;
    void AppHook() override;

    void RegisterLauncher(LfxLauncher* launcher);
    void RegisterPage(LfxPage* page);

    // Page navigation.
    int ShowPage(const char* name);
    int GoBack();
    LfxPage* GetCurrentPage() const;

    // Start-up steps, in the order Init runs them.
    int PreInitializeLauncher();
    int DetermineLauncherState();
    int CheckMutex();
    int PreInitializePages();
    int PreCreateLauncher();

    // Configuration readers.
    int GetIniString(const char* section, const char* key, CltString& out);
    int GetIniDWORD(const char* section, const char* key, int32_t& out);
    int GetIniString(const LfxIniKey& key, CltString& out)
    {
        return GetIniString(key.section, key.key, out);
    }
    int GetIniDWORD(const LfxIniKey& key, int32_t& out)
    {
        return GetIniDWORD(key.section, key.key, out);
    }
    CltString GetSetupString(uint16_t number);
    CltString GetLauncherDir();

    // Actions.
    int PlaySoundByName(const CltString& name, bool wait);
    int ShowMessage(const char* text, uint32_t flags);
    int Execute(const char* file, const char* parameters, const char* folder, bool reportFailure,
                bool wait);
    int LaunchProduct(int value, bool wait);
    int RunInstaller();
    int RunUninstaller();
    int RunSysCheck();
    int OpenUrl(const char* key);
    int OpenDocument(const char* key);
    int CallWinHelp(uint32_t command, uintptr_t data);

    // Checks before the game or the installer starts.
    int CheckMemory();
    int CheckDirectX();
    int CheckDirectSound();
    int CheckMedia();

    // Fields, in this order; zero until set (see the header comment).
    int32_t m_bInstallDX;
    int32_t m_bRetail;
    int32_t m_nDisks;
    uint32_t m_dwOptions;
    uint32_t m_dwState;
    uint32_t m_dwInstalled;
    CltString m_strVersion;
    LfxPageList* m_lstPages;
    LfxPageList* m_lstPageStack;
    void* m_hMutex;
    void* m_hSetupDll;
    CVokSetup* m_pVokSetup;
    LfxLauncher* m_pLauncher;
    CltTraceWinSink* m_pTraceWinSink;

  private:
    void EarlyConstruct();
    void BuildVersionText();
    bool IsInstalledLauncherRunning(const CltString& installedLauncher);
    LfxPage* FindPage(CltString& list);
};

extern LfxMain g_LfxMain;

// Seams for tests that must not reach the real machine state: the memory figures, the
// system restart, and the message boxes the launcher shows (which block the thread). Each
// points at the system's function.
extern void(WINAPI* g_pfnLfxGlobalMemoryStatus)(LPMEMORYSTATUS status);
extern BOOL(WINAPI* g_pfnLfxExitWindowsEx)(UINT flags, DWORD reason);
extern int(WINAPI* g_pfnLfxMessageBox)(HWND owner, LPCSTR text, LPCSTR caption, UINT style);
// Every registered page, in registration order; the pages not yet chosen as active.
extern LfxPageList* g_lstRegisteredPages;
