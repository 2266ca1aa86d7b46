// Harness for running the real programs under Wine (or Windows) as a user would; used by
// the tests and their probes.
//
// RunProgram starts a program as a debuggee, so that every text it sends to
// OutputDebugStringA arrives byte-exact and in order, waits for its end with a time-out,
// and meanwhile finds each message box the program shows, reads its title, text and
// buttons from outside and clicks the button the test scripted.
#pragma once

#include <windows.h>

#include "tools/TraceRun/trace_Debuggee.h"

#include <functional>
#include <string>
#include <vector>

namespace harness
{
struct MessageBoxRecord
{
    std::string title;
    std::string text;
    std::vector<int> buttons;             // control ids of the visible buttons, in id order
    std::vector<std::string> buttonTexts; // their captions, same order
    std::string icon;      // "hand", "question", "exclamation", "asterisk", "other" or ""
    int defaultButton = 0; // the id of the default push button (the one Enter presses), or 0
    // Whether the box disabled the other top-level windows of its thread (task-modal): 1 or
    // 0, or -1 when its thread has no window besides the box and its owner to tell by.
    int taskModal = -1;
    std::string owner;    // the class of the box's owner window, or "none"
    int answer = 0;       // the id clicked
    bool scripted = true; // false when the script had no answer left
};

// A program run as a debuggee (its trace) whose message boxes are read and answered.
struct RunOptions : trace::DebuggeeOptions
{
    std::vector<int> answers;      // button ids, one per expected message box, in order
    bool leaveBoxesToUser = false; // true: boxes are neither read nor clicked
    // true: the program's own windows (classes "CltWin:...") are asked to close once seen,
    // so that a launcher that opens its window ends like one closed by the user.
    bool closeWindows = true;
    // Called with each box as read, before its button is clicked (on the watcher thread).
    std::function<void(const MessageBoxRecord&)> onBox;
};

struct RunResult : trace::DebuggeeResult
{
    std::vector<MessageBoxRecord> boxes;
};

RunResult RunProgram(const RunOptions& options);

// Watches a process (the caller's own included) on a thread of its own: each message box
// it shows is read and its scripted button clicked; boxes beyond the script are closed
// with their last button and marked unscripted.
class BoxWatcher
{
  public:
    BoxWatcher(DWORD processId, std::vector<int> answers,
               std::function<void(const MessageBoxRecord&)> onBox = nullptr,
               bool closeWindows = false);
    ~BoxWatcher();
    BoxWatcher(const BoxWatcher&) = delete;
    BoxWatcher& operator=(const BoxWatcher&) = delete;
    // Stops watching and returns the boxes seen, in order.
    std::vector<MessageBoxRecord> Stop();

  private:
    struct State;
    State* m_state;
};

// The MessageBox style a box shows: its buttons, icon and default button, and
// MB_TASKMODAL when the box was seen to be task-modal (see taskModal). 0xF in the low
// bits stands for buttons of no known set.
UINT StyleOf(const MessageBoxRecord& box);
// What StyleOf can show of a style for the box of a program that has no window besides its
// boxes: all but MB_TASKMODAL, which only the disabling of such windows would tell.
inline UINT SeenFromOutside(UINT style)
{
    return style & ~UINT(MB_TASKMODAL);
}

// A hidden window of the calling thread that no box owns. While it exists, a task-modal
// box of this thread disables it, so that the box's task-modality can be told.
class Bystander
{
  public:
    Bystander();
    ~Bystander();
    Bystander(const Bystander&) = delete;
    Bystander& operator=(const Bystander&) = delete;

  private:
    HWND m_window;
};

// The first top-level window, of any process, for which 'matches' holds, or null.
HWND FindTopLevelWindow(const std::function<bool(HWND)>& matches);
std::string ClassOf(HWND window);

// A visible message box with this title, of any process, or null.
HWND FindMessageBox(const char* title);
// Reads a box's title, text, icon, buttons and default button from outside.
MessageBoxRecord ReadBox(HWND box);
// Clicks a box's button like a user: the button receives BM_CLICK in its own thread.
void Click(HWND box, int id);

// A started program that the test does not debug (a viewer, a mutex holder).
class Process
{
  public:
    Process() = default;
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;
    bool Start(const std::string& program, const std::string& arguments,
               const std::string& workingFolder = "");
    // Asks the process's top-level windows to close, waits, and ends it if needed.
    DWORD Close(DWORD timeoutMs = 10000);
    DWORD Id() const { return m_pi.dwProcessId; }
    HANDLE Handle() const { return m_pi.hProcess; }

  private:
    PROCESS_INFORMATION m_pi = {};
};

// Waits until a top-level window of the class exists; returns it or null.
HWND WaitForWindowClass(const char* className, DWORD timeoutMs = 10000);
// The top-level window of the framework's classes ("CltWin:...") with this text, or null.
HWND FindFrameworkWindow(const char* text);
// Waits until the window's child with this id shows a text (a window is found before its
// children are made); returns the text, or "" after the time-out.
std::string WaitForChildText(HWND window, int id, DWORD timeoutMs = 10000);

// Files and folders.
std::string ExeFolder(); // folder of the running test program
std::string TestRoot();  // a scratch folder for this test program
std::string Join(const std::string& a, const std::string& b);
bool MakeFolders(const std::string& path);
bool WriteTextFile(const std::string& path, const std::string& content);
std::string ReadTextFile(const std::string& path);
bool RemoveTree(const std::string& path);
bool CopyInto(const std::string& file, const std::string& folder, const std::string& newName = "");

// Registry values under HKEY_LOCAL_MACHINE.
bool SetRegString(const std::string& key, const std::string& name, const std::string& value);
bool SetRegDword(const std::string& key, const std::string& name, DWORD value);
bool DeleteRegTree(const std::string& key);

} // namespace harness
