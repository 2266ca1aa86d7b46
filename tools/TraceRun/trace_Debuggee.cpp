// Running a program as a debuggee (see trace_Debuggee.h).
//
// The debug loop runs on its own thread (the thread that creates a debuggee must be the
// one that waits for its events), so that debug events are always drained while the
// caller's thread does its own work (the tests' harness reads and clicks message boxes: a
// box's window is only ever asked for its text while the debuggee runs).
#include "tools/TraceRun/trace_Debuggee.h"

#include <atomic>
#include <cstring>
#include <thread>

namespace trace
{
namespace
{
struct DebugSession
{
    DebuggeeOptions options;
    DebuggeeResult result;
    std::atomic<bool> done{false};
    std::atomic<DWORD> pid{0};
    HANDLE process = nullptr;
    HANDLE ready = nullptr; // set once the process was created (or failed)
};

// The file's path as the system names it ("C:\\windows\\system32\\user32.dll").
std::string PathOf(HANDLE file)
{
    char path[MAX_PATH * 2] = {};
    DWORD n = GetFinalPathNameByHandleA(file, path, sizeof path, FILE_NAME_NORMALIZED);
    if (n == 0 || n >= sizeof path) return "?";
    return strncmp(path, "\\\\?\\", 4) == 0 ? path + 4 : path;
}

void DebugLoop(DebugSession* s)
{
    std::string commandLine = "\"" + s->options.program + "\"";
    if (!s->options.arguments.empty()) commandLine += " " + s->options.arguments;
    std::vector<char> buffer(commandLine.begin(), commandLine.end());
    buffer.push_back(0);
    STARTUPINFOA si = {};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi = {};
    const char* folder =
        s->options.workingFolder.empty() ? nullptr : s->options.workingFolder.c_str();
    if (!CreateProcessA(s->options.program.c_str(), buffer.data(), nullptr, nullptr, FALSE,
                        DEBUG_ONLY_THIS_PROCESS, nullptr, folder, &si, &pi))
    {
        s->result.error = "CreateProcess failed: " + std::to_string(GetLastError());
        s->done = true;
        SetEvent(s->ready);
        return;
    }
    s->result.started = true;
    s->process = pi.hProcess;
    s->pid = pi.dwProcessId;
    s->result.processId = pi.dwProcessId;
    SetEvent(s->ready);

    for (;;)
    {
        DEBUG_EVENT ev;
        if (!WaitForDebugEvent(&ev, 100)) continue;
        DWORD status = DBG_CONTINUE;
        switch (ev.dwDebugEventCode)
        {
        case OUTPUT_DEBUG_STRING_EVENT:
        {
            const OUTPUT_DEBUG_STRING_INFO& info = ev.u.DebugString;
            std::string text(info.nDebugStringLength, '\0');
            SIZE_T read = 0;
            ReadProcessMemory(pi.hProcess, info.lpDebugStringData, text.data(), text.size(), &read);
            text.resize(read);
            if (!text.empty() && text.back() == '\0') text.pop_back();
            if (s->options.onTrace) s->options.onTrace(text);
            s->result.traces.push_back(text);
            break;
        }
        case CREATE_PROCESS_DEBUG_EVENT:
            if (ev.u.CreateProcessInfo.hFile) CloseHandle(ev.u.CreateProcessInfo.hFile);
            break;
        case LOAD_DLL_DEBUG_EVENT:
            if (ev.u.LoadDll.hFile)
            {
                s->result.libraries.push_back(PathOf(ev.u.LoadDll.hFile));
                CloseHandle(ev.u.LoadDll.hFile);
            }
            break;
        case EXCEPTION_DEBUG_EVENT:
            if (ev.u.Exception.ExceptionRecord.ExceptionCode != EXCEPTION_BREAKPOINT)
                status = DBG_EXCEPTION_NOT_HANDLED;
            break;
        case EXIT_PROCESS_DEBUG_EVENT:
            s->result.exitCode = ev.u.ExitProcess.dwExitCode;
            ContinueDebugEvent(ev.dwProcessId, ev.dwThreadId, DBG_CONTINUE);
            CloseHandle(pi.hThread);
            s->done = true;
            return;
        default: break;
        }
        ContinueDebugEvent(ev.dwProcessId, ev.dwThreadId, status);
    }
}
} // namespace

std::string DebuggeeResult::JoinedTrace() const
{
    std::string all;
    for (const std::string& t : traces)
        all += t;
    return all;
}

DebuggeeResult RunDebuggee(const DebuggeeOptions& options,
                           const std::function<void(DWORD processId)>& onWaiting)
{
    DebugSession session;
    session.options = options;
    session.ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    std::thread debugger(DebugLoop, &session);
    WaitForSingleObject(session.ready, INFINITE);
    DWORD start = GetTickCount();
    while (!session.done)
    {
        if (options.timeoutMs != INFINITE && GetTickCount() - start > options.timeoutMs &&
            !session.result.timedOut)
        {
            session.result.timedOut = true;
            TerminateProcess(session.process, 0xDEAD);
        }
        if (onWaiting) onWaiting(session.pid);
        Sleep(20);
    }
    debugger.join();
    if (session.process) CloseHandle(session.process);
    CloseHandle(session.ready);
    return session.result;
}
} // namespace trace
