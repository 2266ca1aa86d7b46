// Helpers shared by the framework's unit tests: a trace sink that keeps every text, and
// a scope that gives a test its own environment and sink and restores the process's
// afterwards.
#pragma once

#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_Trace.h"

#include <memory>
#include <string>
#include <vector>

class CapturingSink final : public CltTraceSink
{
  public:
    void Output(const char* text) override { texts.emplace_back(text); }
    std::vector<std::string> texts;
};

class TestScope
{
  public:
    TestScope()
    {
        CltState* s = clt_GetState();
        m_savedSink = s->m_pTraceSink;
        m_savedEnv = s->m_pEnv;
        sink = std::make_unique<CapturingSink>(); // each sink and environment installs itself
        env = std::make_unique<CltEnvironment>();
    }
    ~TestScope()
    {
        env.reset();
        CltState* s = clt_GetState();
        s->m_pTraceSink = m_savedSink;
        s->m_pEnv = m_savedEnv;
    }
    std::unique_ptr<CapturingSink> sink;
    std::unique_ptr<CltEnvironment> env;

  private:
    CltTraceSink* m_savedSink;
    CltEnvironment* m_savedEnv;
};
