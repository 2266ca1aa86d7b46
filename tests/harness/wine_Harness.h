// Harness of the probes that test drivers run under Wine: programs run as a user would
// meet them, their message boxes read and answered from outside.
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
    std::vector<int> buttons; // control ids of the visible buttons, in id order
    std::string icon;         // "hand", "question", "exclamation", "asterisk", "other" or ""
    int defaultButton = 0;    // the id of the default push button (the one Enter presses), or 0
    std::string owner;        // the class of the box's owner window, or "none"
    int answer = 0;           // the id clicked
    bool scripted = true;     // false when the script had no answer left
};

// A program run as a debuggee (its trace) whose message boxes are read and answered, and
// whose own windows (classes "CltWin:...") are asked to close once seen, so that a launcher
// that opens its window ends like one closed by the user.
struct RunOptions : trace::DebuggeeOptions
{
    std::vector<int> answers;      // button ids, one per expected message box, in order
    bool leaveBoxesToUser = false; // true: neither boxes nor windows are touched
    // Called with each box as read, before its button is clicked (on the watcher thread).
    std::function<void(const MessageBoxRecord&)> onBox;
};

trace::DebuggeeResult RunProgram(const RunOptions& options);

// Watches another process on a thread of its own: each message box it shows is read and
// its scripted button clicked; boxes beyond the script are closed with their last button
// and marked unscripted; its framework windows are asked to close once they show.
class BoxWatcher
{
  public:
    BoxWatcher(DWORD processId, std::vector<int> answers,
               std::function<void(const MessageBoxRecord&)> onBox);
    ~BoxWatcher();
    BoxWatcher(const BoxWatcher&) = delete;
    BoxWatcher& operator=(const BoxWatcher&) = delete;

  private:
    struct State;
    State* m_state;
};

// The MessageBox style a box shows: its buttons, icon and default button (all but
// MB_TASKMODAL, which a program without other windows does not show). 0xF in the low bits
// stands for buttons of no known set.
UINT StyleOf(const MessageBoxRecord& box);

// The first top-level window, of any process, for which 'matches' holds, or null.
HWND FindTopLevelWindow(const std::function<bool(HWND)>& matches);
std::string ClassOf(HWND window);

// A visible message box with this title, of any process, or null.
HWND FindMessageBox(const char* title);
// Reads a box's title, text, icon, buttons and default button from outside.
MessageBoxRecord ReadBox(HWND box);
// Clicks a box's button like a user: the button receives BM_CLICK in its own thread.
void Click(HWND box, int id);

// The top-level window of the framework's classes ("CltWin:...") with this text, or of the
// class named after "class=", or null.
HWND FindFrameworkWindow(const char* text);

} // namespace harness
