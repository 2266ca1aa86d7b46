// Harness of the probes that test drivers run under Wine: message boxes and windows of other
// processes found, read and answered from outside, as a user would.
#pragma once

#include <windows.h>

#include <functional>
#include <set>
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

// The script for one process's message boxes, worked through by AnswerBoxes.
struct BoxScript
{
    std::vector<int> answers; // button ids, one per expected message box, in order
    // Called with each box as read, before its button is clicked.
    std::function<void(const MessageBoxRecord&)> onBox;
    size_t next = 0;
    std::set<HWND> seen, closed;
};

// Called again and again while the process runs: its framework windows (classes
// "CltWin:...") are asked to close once they show, so that a launcher that opens its window
// ends like one closed by the user; a new message box is read and its scripted button
// clicked (a box beyond the script gets its last button and is marked unscripted).
void AnswerBoxes(DWORD processId, BoxScript& script);

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
