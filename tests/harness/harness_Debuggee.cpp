// Programs run as debuggees, so that every text they send to OutputDebugStringA arrives
// byte-exact and in order, and programs started plainly (Process).
//
// The debug loop runs on its own thread (the thread that creates a debuggee must be the
// one that waits for its events), so that debug events are always drained while the
// main thread reads and clicks message boxes: a box's window is only ever asked for its
// text while the debuggee runs.
#include "harness/wine_Harness.h"

#include <atomic>
#include <memory>
#include <thread>

namespace harness
{
namespace
{
struct DebugSession
{
    RunOptions options;
    RunResult result;
    std::atomic<bool> done{false};
    std::atomic<DWORD> pid{0};
    HANDLE process = nullptr;
    HANDLE ready = nullptr; // set once the process was created (or failed)
};

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
            if (ev.u.LoadDll.hFile) CloseHandle(ev.u.LoadDll.hFile);
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

std::string RunResult::JoinedTrace() const
{
    std::string all;
    for (const std::string& t : traces)
        all += t;
    return all;
}

RunResult RunProgram(const RunOptions& options)
{
    DebugSession session;
    session.options = options;
    session.ready = CreateEventA(nullptr, TRUE, FALSE, nullptr);
    std::thread debugger(DebugLoop, &session);
    WaitForSingleObject(session.ready, INFINITE);
    {
        std::unique_ptr<BoxWatcher> watcher;
        if (!options.leaveBoxesToUser && session.pid)
            watcher = std::make_unique<BoxWatcher>(session.pid, options.answers, options.onBox,
                                                   options.closeWindows);
        DWORD start = GetTickCount();
        while (!session.done)
        {
            if (options.timeoutMs != INFINITE && GetTickCount() - start > options.timeoutMs &&
                !session.result.timedOut)
            {
                session.result.timedOut = true;
                TerminateProcess(session.process, 0xDEAD);
            }
            Sleep(20);
        }
        if (watcher) session.result.boxes = watcher->Stop();
    }
    debugger.join();
    if (session.process) CloseHandle(session.process);
    CloseHandle(session.ready);
    return session.result;
}

Process::~Process()
{
    Close();
}

bool Process::Start(const std::string& program, const std::string& arguments,
                    const std::string& workingFolder)
{
    std::string commandLine = "\"" + program + "\"" + (arguments.empty() ? "" : " " + arguments);
    std::vector<char> buffer(commandLine.begin(), commandLine.end());
    buffer.push_back(0);
    STARTUPINFOA si = {};
    si.cb = sizeof si;
    return CreateProcessA(program.c_str(), buffer.data(), nullptr, nullptr, FALSE, 0, nullptr,
                          workingFolder.empty() ? nullptr : workingFolder.c_str(), &si, &m_pi) != 0;
}

namespace
{
BOOL CALLBACK CloseWindowOf(HWND window, LPARAM pid)
{
    DWORD owner = 0;
    GetWindowThreadProcessId(window, &owner);
    if (owner == static_cast<DWORD>(pid)) PostMessageA(window, WM_CLOSE, 0, 0);
    return TRUE;
}
} // namespace

DWORD Process::Close(DWORD timeoutMs)
{
    if (!m_pi.hProcess) return 0xFFFFFFFF;
    EnumWindows(CloseWindowOf, static_cast<LPARAM>(m_pi.dwProcessId));
    if (WaitForSingleObject(m_pi.hProcess, timeoutMs) != WAIT_OBJECT_0)
    {
        TerminateProcess(m_pi.hProcess, 0xDEAD);
        WaitForSingleObject(m_pi.hProcess, 5000);
    }
    DWORD code = 0xFFFFFFFF;
    GetExitCodeProcess(m_pi.hProcess, &code);
    CloseHandle(m_pi.hProcess);
    CloseHandle(m_pi.hThread);
    m_pi = {};
    return code;
}

HWND WaitForWindowClass(const char* className, DWORD timeoutMs)
{
    DWORD start = GetTickCount();
    for (;;)
    {
        if (HWND window = FindWindowA(className, nullptr)) return window;
        if (GetTickCount() - start > timeoutMs) return nullptr;
        Sleep(20);
    }
}

HWND FindFrameworkWindow(const char* text)
{
    return FindTopLevelWindow(
        [text](HWND window)
        {
            char caption[256] = {};
            GetWindowTextA(window, caption, sizeof caption);
            return ClassOf(window).rfind("CltWin:", 0) == 0 && strcmp(caption, text) == 0;
        });
}

bool CloseFrameworkWindow(const char* text, DWORD timeoutMs)
{
    DWORD start = GetTickCount();
    HWND window;
    while (!(window = FindFrameworkWindow(text)))
    {
        if (GetTickCount() - start > timeoutMs) return false;
        Sleep(20);
    }
    DWORD pid = 0;
    GetWindowThreadProcessId(window, &pid);
    HANDLE process = OpenProcess(SYNCHRONIZE, FALSE, pid);
    PostMessageA(window, WM_CLOSE, 0, 0);
    bool ended = process && WaitForSingleObject(process, timeoutMs) == WAIT_OBJECT_0;
    if (process) CloseHandle(process);
    return ended;
}

std::string WaitForChildText(HWND window, int id, DWORD timeoutMs)
{
    DWORD start = GetTickCount();
    for (;;)
    {
        char text[4096] = {};
        if (HWND child = GetDlgItem(window, id))
            SendMessageTimeoutA(child, WM_GETTEXT, sizeof text, reinterpret_cast<LPARAM>(text),
                                SMTO_ABORTIFHUNG, 5000, nullptr);
        if (*text || GetTickCount() - start > timeoutMs) return text;
        Sleep(20);
    }
}
} // namespace harness
