// The application base (portable parts).
#include "FrameWork/_cult/Source/clt_App.h"

#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_Trace.h"

CltApp::CltApp()
{
    clt_GetState()->m_pApp = this;
}

CltApp::~CltApp()
{
    clt_Trace("CltApp: ");
    clt_Trace("Destruction\n");
}

int CltApp::Init()
{
    return 0;
}

void CltApp::AppHook() {}
