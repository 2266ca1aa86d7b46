// Shared by the launcher core's in-process tests: gives back the setup object and library
// that PreInitializeLauncher loaded, so that the next case can load them afresh.
#pragma once

#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

inline void ReleaseSetup()
{
    if (g_LfxMain.m_pVokSetup) g_LfxMain.m_pVokSetup->Release();
    if (g_LfxMain.m_hSetupDll) FreeLibrary(static_cast<HMODULE>(g_LfxMain.m_hSetupDll));
    g_LfxMain.m_pVokSetup = nullptr;
    g_LfxMain.m_hSetupDll = nullptr;
}
