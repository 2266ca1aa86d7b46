// clt_Trace and the sink base (portable). The sinks that reach the system are in
// clt_Trace_win.cpp.
#include "FrameWork/_cult/Source/clt_Trace.h"

#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_cult/Source/clt_Text.h"

namespace
{
char s_szTraceBuffer[CLT_FORMAT_BUFFER];
}

CltTraceSink::CltTraceSink()
{
    clt_GetState()->m_pTraceSink = this;
}

void clt_TraceV(const char* format, va_list args)
{
    CltTraceSink* sink = clt_GetState()->m_pTraceSink;
    if (!sink) return;
    clt_FormatV(s_szTraceBuffer, format, args);
    s_szTraceBuffer[CLT_FORMAT_BUFFER - 1] = 0;
    sink->Output(s_szTraceBuffer);
}

void clt_Trace(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    clt_TraceV(format, args);
    va_end(args);
}

const char* clt_GetTraceBuffer()
{
    return s_szTraceBuffer;
}
