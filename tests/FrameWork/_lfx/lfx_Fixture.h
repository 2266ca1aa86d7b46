// Shared by the tests that run the launcher core in their own process: the setup object
// and library that PreInitializeLauncher loaded are given back, so that the next case loads
// them afresh; the message boxes are answered from a script instead of being shown.
#pragma once

#include "FrameWork/_lfx/Source/lfx_System.h"
#include "FrameWork/_lfx/Source/lfx_VokSetup.h"

#include <string>
#include <vector>

inline void ReleaseSetup()
{
    if (g_LfxMain.m_pVokSetup) g_LfxMain.m_pVokSetup->Release();
    if (g_LfxMain.m_hSetupDll) FreeLibrary(static_cast<HMODULE>(g_LfxMain.m_hSetupDll));
    g_LfxMain.m_pVokSetup = nullptr;
    g_LfxMain.m_hSetupDll = nullptr;
}

// While it lives, each box the launcher would show is recorded and answered with the next
// of the answers (IDCANCEL once they have run out).
class ScriptedBoxes
{
  public:
    struct Box
    {
        std::string text, caption;
        UINT style;
    };
    explicit ScriptedBoxes(std::vector<int> answers)
    {
        s_shown.clear();
        s_answers = std::move(answers);
        g_pfnLfxMessageBox = Show;
    }
    ~ScriptedBoxes() { g_pfnLfxMessageBox = MessageBoxA; }
    const std::vector<Box>& Shown() const { return s_shown; }

  private:
    static int WINAPI Show(HWND, LPCSTR text, LPCSTR caption, UINT style)
    {
        s_shown.push_back({text, caption, style});
        size_t i = s_shown.size() - 1;
        return i < s_answers.size() ? s_answers[i] : IDCANCEL;
    }
    static inline std::vector<Box> s_shown;
    static inline std::vector<int> s_answers;
};
