// Tracing: every step of the program writes a running text trace to one sink at a time.
//
// clt_Trace formats with wvsprintfA semantics into one static 1024-byte buffer (so the
// text is cut at 1023 characters) and hands it to the current sink. Without a sink
// nothing is formatted. Constructing a sink makes it the current one; sinks are never
// unregistered, so the last one constructed receives everything from then on.
#pragma once

#include <cstdarg>

class CltTraceSink
{
  public:
    CltTraceSink();
    virtual void Output(const char* text) = 0;

  protected:
    ~CltTraceSink() = default;
};

// Passes every text unchanged to the debugger output (OutputDebugStringA).
class CltDebuggerSink final : public CltTraceSink
{
  public:
    void Output(const char* text) override;
};

// Sends every text to the TraceWin viewer as a WM_COPYDATA record. The viewer's window is
// looked up anew for every text: class "TraceWin TRACE Window" first, then
// "MfxTraceWindow"; without either the text is dropped.
class CltTraceWinSink final : public CltTraceSink
{
  public:
    void Output(const char* text) override;
};

// The dwData of the TraceWin record: the characters "twin" in memory order.
constexpr unsigned long CLT_TRACEWIN_MAGIC = 0x6E697774;

void clt_Trace(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

void clt_TraceV(const char* format, va_list args);

// The text of the most recent trace call (the shared formatting buffer).
const char* clt_GetTraceBuffer();
