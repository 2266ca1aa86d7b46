// The program entry and the start of the application on Windows.
#include "FrameWork/_cult/Source/clt_App.h"

#include "FrameWork/_cult/Source/clt_CommandLine.h"
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_Trace.h"

#include <windows.h>

int CltApp::Start(void* hInstance, const char* commandLine)
{
    CltState* state = clt_GetState();
    state->m_hInstance = hInstance;
    clt_ParseCommandLine(commandLine);
    if (state->m_pEnv)
    {
        char path[MAX_PATH] = {};
        GetModuleFileNameA(nullptr, path, MAX_PATH);
        state->m_pEnv->Set("ModuleFileName", path, true);
    }
    clt_Trace("CltApp: ");
    clt_Trace("Running application...\n");
    return Init();
}

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR commandLine, int)
{
    CltApp* app = clt_GetState()->m_pApp;
    if (!app) return 0;
    clt_Trace("WinMain: Initializing CltWinApp\n");
    return app->Start(hInstance, commandLine);
}
