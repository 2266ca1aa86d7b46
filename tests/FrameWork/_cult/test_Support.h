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
    std::string Joined() const
    {
        std::string all;
        for (const auto& t : texts)
            all += t;
        return all;
    }
    std::vector<std::string> texts;
};

class TestScope
{
  public:
    explicit TestScope(bool withEnvironment = true)
    {
        CltState* s = clt_GetState();
        m_savedSink = s->m_pTraceSink;
        m_savedEnv = s->m_pEnv;
        sink = std::make_unique<CapturingSink>();
        if (withEnvironment)
            env = std::make_unique<CltEnvironment>();
        else
            s->m_pEnv = nullptr;
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
