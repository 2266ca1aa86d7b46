// The two trace sinks that reach outside the process, and the static debugger sink,
// which is constructed last of all statics and so receives every text from the program
// entry on. It is never destroyed, so tracing works until the process ends.
#include "FrameWork/_cult/Source/clt_Trace.h"

#include "FrameWork/_cult/Source/clt_Init.h"

#include <cstring>
#include <windows.h>

void CltDebuggerSink::Output(const char* text)
{
    OutputDebugStringA(text);
}

void CltTraceWinSink::Output(const char* text)
{
    HWND viewer = FindWindowA("TraceWin TRACE Window", nullptr);
    if (!viewer) viewer = FindWindowA("MfxTraceWindow", nullptr);
    if (!viewer) return;
    COPYDATASTRUCT record;
    record.dwData = CLT_TRACEWIN_MAGIC;
    record.cbData = static_cast<DWORD>(strlen(text));
    record.lpData = const_cast<char*>(text);
    SendMessageA(viewer, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&record));
}

CLT_STATIC(CLT_INIT_DEBUGGER_SINK) static CltDebuggerSink s_debuggerSink;
