// TraceRun: starts a program under the debugger, prints every text it sends to
// OutputDebugStringA as it arrives (byte-exact, nothing added), and ends with the
// program's exit code. Message boxes are left to the user.
//
// Usage: TraceRun.exe [/out:FILE] PROGRAM.exe [ARGUMENTS...]
//   /out:FILE  also writes the texts to FILE
#include "tools/TraceRun/trace_Debuggee.h"

#include <windows.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace
{
// Skips one command-line token (quoted or not) and the blanks after it.
const char* SkipToken(const char* p)
{
    if (*p == '"')
    {
        for (++p; *p && *p != '"'; ++p)
        {
        }
        if (*p) ++p;
    }
    else
        while (*p && *p != ' ' && *p != '\t')
            ++p;
    while (*p == ' ' || *p == '\t')
        ++p;
    return p;
}
} // namespace

int main(int argc, char** argv)
{
    int first = 1;
    FILE* out = nullptr;
    if (argc > 1 && strncmp(argv[1], "/out:", 5) == 0)
    {
        out = fopen(argv[1] + 5, "wb");
        first = 2;
    }
    if (argc <= first)
    {
        fprintf(stderr, "usage: TraceRun.exe [/out:FILE] PROGRAM.exe [ARGUMENTS...]\n");
        return 2;
    }
    char full[MAX_PATH] = {};
    GetFullPathNameA(argv[first], MAX_PATH, full, nullptr);

    trace::DebuggeeOptions run;
    run.program = full;
    // The program's arguments are passed on exactly as they were written.
    const char* rest = SkipToken(GetCommandLineA());
    for (int i = 1; i <= first; ++i)
        rest = SkipToken(rest);
    run.arguments = rest;
    run.timeoutMs = INFINITE;
    run.onTrace = [out](const std::string& text)
    {
        fwrite(text.data(), 1, text.size(), stdout);
        fflush(stdout);
        if (out)
        {
            fwrite(text.data(), 1, text.size(), out);
            fflush(out);
        }
    };
    trace::DebuggeeResult result = trace::RunDebuggee(run);
    if (out) fclose(out);
    if (!result.started)
    {
        fprintf(stderr, "TraceRun: %s\n", result.error.c_str());
        return 2;
    }
    fprintf(stderr, "\nTraceRun: exit code %lu\n", static_cast<unsigned long>(result.exitCode));
    return static_cast<int>(result.exitCode);
}
