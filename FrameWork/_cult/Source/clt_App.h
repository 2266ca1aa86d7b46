// CltApp: the application base. Constructing one records it as the application in
// CltState; the program entry hands it the instance and the command line through Start.
#pragma once

class CltApp
{
  public:
    CltApp();
    virtual ~CltApp();
    virtual int Init();
    // A hook that the base leaves empty; nothing in the framework calls it.
    virtual void AppHook();

    // Records the instance, parses the command line into the environment, records the
    // executable's path as ModuleFileName and runs Init; returns its result.
    int Start(void* hInstance, const char* commandLine);
};
