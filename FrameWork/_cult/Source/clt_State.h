// CltState: the framework's single state object, through which the trace sink, the
// application object, the environment and the module instance find each other.
//
// It lives in static storage and is used from the first moment of static construction,
// before its own constructor runs: its storage starts as zero and its constructor clears
// only the instance handle, so a sink or environment recorded earlier stays recorded.
#pragma once

class CltTraceSink;
class CltApp;
class CltEnvironment;

class CltState
{
  public:
    CltState();
    virtual ~CltState();

    CltTraceSink* m_pTraceSink; // current trace destination, or null
    CltApp* m_pApp;             // the application object, or null
    CltEnvironment* m_pEnv;     // the environment, or null
    void* m_hInstance;          // the module instance handle given to the entry
};

CltState* clt_GetState();
