// Programs run as debuggees with their message boxes read and answered while they run, and
// programs started plainly (Process).
#include "harness/wine_Harness.h"

#include <memory>

namespace harness
{
RunResult RunProgram(const RunOptions& options)
{
    std::unique_ptr<BoxWatcher> watcher;
    RunResult result;
    static_cast<trace::DebuggeeResult&>(result) = trace::RunDebuggee(
        options,
        [&](DWORD processId)
        {
            if (!options.leaveBoxesToUser)
                watcher = std::make_unique<BoxWatcher>(processId, options.answers, options.onBox,
                                                       options.closeWindows);
        });
    if (watcher) result.boxes = watcher->Stop();
    return result;
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
