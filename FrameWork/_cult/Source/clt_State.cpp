// The static CltState instance (see clt_State.h for why its constructor touches so little).
#include "FrameWork/_cult/Source/clt_State.h"

#include "FrameWork/_cult/Source/clt_Init.h"

CltState::CltState()
{
    m_hInstance = nullptr;
}

CltState::~CltState() = default;

CLT_STATIC(CLT_INIT_FRAMEWORK) static CltState s_state;

CltState* clt_GetState()
{
    return &s_state;
}
