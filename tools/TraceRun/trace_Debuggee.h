// Runs a program as a debuggee, so that every text it sends to OutputDebugStringA arrives
// byte-exact and in order. TraceRun prints the texts as they come; the tests' harness adds
// the reading and answering of message boxes while the program runs.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace trace
{
struct DebuggeeOptions
{
    std::string program;       // full path of the executable
    std::string arguments;     // the text after the program's quoted path
    std::string workingFolder; // empty: the caller's current folder
    DWORD timeoutMs = 30000;   // INFINITE: no time-out; then the program is terminated
    std::function<void(const std::string&)> onTrace; // called as each text arrives
};

struct DebuggeeResult
{
    bool started = false;
    bool timedOut = false;
    DWORD exitCode = 0xFFFFFFFF;
    DWORD processId = 0;
    std::vector<std::string> traces;    // each OutputDebugStringA text, without terminator
    std::vector<std::string> libraries; // the path of each library the loader mapped, in order
    std::string error;

    std::string JoinedTrace() const;
};

// Runs the program to its end. While it runs, onWaiting is called on the caller's thread
// every 20 ms or so with the program's process id.
DebuggeeResult RunDebuggee(const DebuggeeOptions& options,
                           const std::function<void(DWORD processId)>& onWaiting = nullptr);
} // namespace trace
