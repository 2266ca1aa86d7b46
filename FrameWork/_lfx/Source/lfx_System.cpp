// LfxMain: registration, the start-up sequence, the switches that act without a window,
// page choice and navigation, destruction. Configuration, state, actions and checks have
// files of their own (lfx_Configuration, lfx_State, lfx_Actions, lfx_Checks).
#include "FrameWork/_lfx/Source/lfx_System.h"

#include "FrameWork/_lfx/Source/lfx_Core.h"
#include "FrameWork/_lfx/Source/lfx_EnvNames.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Page.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_Init.h"
#include "FrameWork/_cult/Source/clt_Trace.h"

#include <windows.h>

#include <cstdarg>

using lfx_core::Trace;

LfxPageList* g_lstRegisteredPages;

CLT_STATIC(CLT_INIT_LAUNCHER_CORE) LfxMain g_LfxMain;

namespace lfx_core
{
void Trace(const char* format, ...)
{
    clt_Trace("LfxMain: ");
    va_list args;
    va_start(args, format);
    clt_TraceV(format, args);
    va_end(args);
}

CltString ModulePath()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    return path;
}
} // namespace lfx_core

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
        Trace("Page [%s] shown.\n", name);
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
    Trace("Page [%s] closed.\n", top->GetName().c_str());
    if (LfxPage* below = GetCurrentPage())
    {
        below->Show();
        Trace("Page [%s] shown.\n", below->GetName().c_str());
    }
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
