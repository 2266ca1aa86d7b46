// RunProbe: runs a program as a player would meet it, or answers one of its message boxes,
// for test drivers that run outside Wine.
//
// RunProbe.exe box TITLE ANSWER [TIMEOUT_MS]
//   finds a shown message box of any program by its title, prints its line and clicks ANSWER
//   (1 OK, 2 Cancel, 6 Yes, 7 No; 0 leaves it open); exit code 1 when no box came within the
//   time (10 s unless given).
// RunProbe.exe run [/answers:ID,ID...] [/cwd:FOLDER] [/out:FILE] [/at:TEXT] [/leave] PROGRAM [ARGS]
//   runs PROGRAM with the command line ARGS (one argument, passed on as it is) as a debuggee:
//   every text it sends to the debugger goes to FILE, each followed by a zero byte; its boxes
//   are read and answered in order (a box past the answers gets its last button), and its
//   windows of the framework's classes are asked to close once seen (/leave: neither). Prints
//   each box's line as it is answered, then "library<TAB>PATH" for each library the loader
//   mapped, then "exit<TAB>CODE", "exit<TAB>timeout" (after 60 s) or "exit<TAB>" and why it
//   did not start. With /at, when the program sends a text that begins with TEXT (and waits
//   for the debugger), it first prints "at<TAB>VISIBLE REGION" of the first window of the
//   framework's classes: 1 or 0, and what GetWindowRgn answers.
// A box's line: "box", its title, its text (line breaks as \n, tabs as \t, backslashes as
// \\), "style=0x..." (everything the box shows of its MessageBox style), "owner=" with the
// owner's class or "none", and the button clicked ("-" when the answers had run out), separated
// by tabs.
#include "harness/wine_Harness.h"
#include "tools/TraceRun/trace_Debuggee.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

namespace
{
std::string OneLine(const std::string& text)
{
    std::string out;
    for (char c : text)
        out += c == '\n'   ? "\\n"
               : c == '\t' ? "\\t"
               : c == '\\' ? "\\\\"
               : c == '\r' ? ""
                           : std::string(1, c);
    return out;
}

void PrintBox(const harness::MessageBoxRecord& record)
{
    printf("box\t%s\t%s\tstyle=0x%x\towner=%s\t%s\n", record.title.c_str(),
           OneLine(record.text).c_str(), harness::StyleOf(record), record.owner.c_str(),
           record.scripted ? std::to_string(record.answer).c_str() : "-");
    fflush(stdout);
}

int AnswerBox(const char* title, int answer, DWORD timeout)
{
    DWORD start = GetTickCount();
    HWND box = nullptr;
    while (!(box = harness::FindMessageBox(title)))
    {
        if (GetTickCount() - start > timeout) return 1;
        Sleep(20);
    }
    harness::MessageBoxRecord record = harness::ReadBox(box);
    record.answer = answer;
    PrintBox(record);
    if (answer) harness::Click(box, answer);
    return 0;
}

int Run(int argc, char** argv)
{
    trace::DebuggeeOptions run;
    run.timeoutMs = 60000;
    harness::BoxScript script;
    script.onBox = PrintBox; // as each box is answered: a restart may end this program too
    bool leave = false;
    FILE* out = nullptr;
    const char* at = nullptr;
    int i = 0;
    for (; i < argc && argv[i][0] == '/'; ++i)
        if (strncmp(argv[i], "/answers:", 9) == 0)
            for (char* p = argv[i] + 9; *p; p += *p == ',')
                script.answers.push_back(int(strtol(p, &p, 10)));
        else if (strncmp(argv[i], "/cwd:", 5) == 0)
            run.workingFolder = argv[i] + 5;
        else if (strncmp(argv[i], "/out:", 5) == 0)
            out = fopen(argv[i] + 5, "wb");
        else if (strncmp(argv[i], "/at:", 4) == 0)
            at = argv[i] + 4;
        else if (strcmp(argv[i], "/leave") == 0)
            leave = true;
    if (i == argc) return 2;
    char full[MAX_PATH] = {};
    GetFullPathNameA(argv[i], MAX_PATH, full, nullptr);
    run.program = full;
    if (i + 1 < argc) run.arguments = argv[i + 1];
    run.onTrace = [out, at](const std::string& text)
    {
        if (out) fwrite(text.c_str(), 1, text.size() + 1, out), fflush(out);
        if (!at || text.rfind(at, 0) != 0) return;
        HWND window = harness::FindTopLevelWindow(
            [](HWND w) { return harness::ClassOf(w).rfind("CltWin:", 0) == 0; });
        HRGN shape = CreateRectRgn(0, 0, 0, 0);
        printf("at\t%d %d\n", window && IsWindowVisible(window), GetWindowRgn(window, shape));
        DeleteObject(shape);
    };
    std::function<void(DWORD)> answer = [&](DWORD pid) { harness::AnswerBoxes(pid, script); };
    trace::DebuggeeResult r = trace::RunDebuggee(run, leave ? nullptr : answer);
    if (out) fclose(out);
    for (const std::string& library : r.libraries)
        printf("library\t%s\n", library.c_str());
    if (!r.started)
        printf("exit\t%s\n", r.error.c_str());
    else
        printf(r.timedOut ? "exit\ttimeout\n" : "exit\t%lu\n",
               static_cast<unsigned long>(r.exitCode));
    return r.started ? 0 : 2;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc >= 4 && strcmp(argv[1], "box") == 0)
        return AnswerBox(argv[2], atoi(argv[3]), argc > 4 ? DWORD(atol(argv[4])) : 10000);
    if (argc >= 3 && strcmp(argv[1], "run") == 0) return Run(argc - 2, argv + 2);
    fprintf(stderr,
            "usage: RunProbe.exe box TITLE ANSWER [TIMEOUT_MS] | run [OPTIONS] PROGRAM [ARGS]\n");
    return 2;
}
