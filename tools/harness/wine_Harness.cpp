// The test harness (see wine_Harness.h).
//
// The debug loop runs on its own thread (the thread that creates a debuggee must be the
// one that waits for its events), so that debug events are always drained while the
// main thread reads and clicks message boxes: a box's window is only ever asked for its
// text while the debuggee runs.
#include "wine_Harness.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <memory>
#include <set>
#include <thread>

namespace harness
{
namespace
{
std::string WindowText(HWND window)
{
    char buffer[8192] = {};
    DWORD_PTR copied = 0;
    if (!SendMessageTimeoutA(window, WM_GETTEXT, sizeof buffer, reinterpret_cast<LPARAM>(buffer),
                             SMTO_ABORTIFHUNG, 5000, &copied))
        return std::string();
    return std::string(buffer, copied);
}

std::string ClassOf(HWND window)
{
    char name[256] = {};
    GetClassNameA(window, name, sizeof name);
    return name;
}

struct BoxSearch
{
    DWORD pid;
    std::set<HWND>* seen;
    HWND found;
};

BOOL CALLBACK FindNewBox(HWND window, LPARAM param)
{
    auto* search = reinterpret_cast<BoxSearch*>(param);
    DWORD pid = 0;
    GetWindowThreadProcessId(window, &pid);
    if (pid != search->pid || !IsWindowVisible(window)) return TRUE;
    if (ClassOf(window) != "#32770" || search->seen->count(window)) return TRUE;
    search->found = window;
    return FALSE;
}

BOOL CALLBACK CollectButton(HWND child, LPARAM param)
{
    auto* box = reinterpret_cast<std::vector<std::pair<int, HWND>>*>(param);
    if (IsWindowVisible(child) && _stricmp(ClassOf(child).c_str(), "Button") == 0)
        box->emplace_back(GetDlgCtrlID(child), child);
    return TRUE;
}

struct KnownIcon
{
    LPCSTR id;
    const char* name;
};
const KnownIcon kKnownIcons[] = {{IDI_HAND, "hand"},
                                 {IDI_QUESTION, "question"},
                                 {IDI_EXCLAMATION, "exclamation"},
                                 {IDI_ASTERISK, "asterisk"}};

// The pixels (0x00RRGGBB) of a w x h drawing made by draw on a memory bitmap.
template <typename Draw> std::vector<DWORD> Pixels(int w, int h, Draw draw)
{
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bitmap = CreateCompatibleBitmap(screen, w, h);
    HGDIOBJ old = SelectObject(dc, bitmap);
    draw(dc, screen);
    SelectObject(dc, old);
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), w, -h, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    std::vector<DWORD> pixels(size_t(w) * h);
    GetDIBits(dc, bitmap, 0, UINT(h), pixels.data(), &info, DIB_RGB_COLORS);
    for (DWORD& p : pixels)
        p &= 0xFFFFFF;
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return pixels;
}

// Identifies the icon that a control shows on the screen: its pixels are compared with
// each system icon drawn on the control's background (its top-left pixel, which an icon
// leaves transparent). Used for other processes' boxes, whose icon handles mean nothing
// here under Wine. Retries while the box is still being painted.
std::string IconOnScreen(HWND control)
{
    RECT client;
    GetClientRect(control, &client);
    POINT origin = {0, 0};
    ClientToScreen(control, &origin);
    int w = client.right, h = client.bottom;
    if (w <= 0 || h <= 0) return "other";
    for (int attempt = 0; attempt < 40; ++attempt)
    {
        std::vector<DWORD> shown =
            Pixels(w, h,
                   [&](HDC dc, HDC screen)
                   { BitBlt(dc, 0, 0, w, h, screen, origin.x, origin.y, SRCCOPY); });
        DWORD background = shown[0];
        for (const KnownIcon& k : kKnownIcons)
        {
            std::vector<DWORD> drawn = Pixels(
                w, h,
                [&](HDC dc, HDC)
                {
                    HBRUSH brush = CreateSolidBrush(
                        RGB(GetBValue(background), GetGValue(background), GetRValue(background)));
                    RECT all = {0, 0, w, h};
                    FillRect(dc, &all, brush);
                    DeleteObject(brush);
                    DrawIcon(dc, 0, 0, LoadIconA(nullptr, k.id));
                });
            if (drawn == shown) return k.name;
        }
        Sleep(50);
    }
    return "other";
}

// The system icon that a box shows. The caller's own boxes are identified by the icon
// handle; under Wine icon handles differ from process to process, so other processes'
// boxes are identified by the icon's pixels on the screen.
std::string IconOf(HWND box)
{
    HWND control = GetDlgItem(box, 0x0440); // the message box's icon control
    if (!control || !IsWindowVisible(control)) return "";
    DWORD_PTR icon = 0;
    SendMessageTimeoutA(control, STM_GETICON, 0, 0, SMTO_ABORTIFHUNG, 5000, &icon);
    if (!icon) return "";
    DWORD owner = 0;
    GetWindowThreadProcessId(box, &owner);
    if (owner != GetCurrentProcessId()) return IconOnScreen(control);
    for (const KnownIcon& k : kKnownIcons)
        if (reinterpret_cast<DWORD_PTR>(LoadIconA(nullptr, k.id)) == icon) return k.name;
    return "other";
}

// A task-modal box disables every other top-level window of its thread, not only its
// owner: windows other than the box and its owner tell.
struct Bystanders
{
    HWND box, owner;
    int enabled = 0, disabled = 0;
};

BOOL CALLBACK CountBystander(HWND window, LPARAM p)
{
    auto* seen = reinterpret_cast<Bystanders*>(p);
    // The system's input-method window is disabled from the start: it tells nothing.
    char cls[8] = {};
    GetClassNameA(window, cls, sizeof cls);
    if (window != seen->box && window != seen->owner && strcmp(cls, "IME") != 0)
        ++(IsWindowEnabled(window) ? seen->enabled : seen->disabled);
    return TRUE;
}

int TaskModal(HWND box)
{
    Bystanders seen = {box, GetWindow(box, GW_OWNER)};
    EnumThreadWindows(GetWindowThreadProcessId(box, nullptr), CountBystander,
                      reinterpret_cast<LPARAM>(&seen));
    if (seen.enabled + seen.disabled == 0) return -1;
    return seen.enabled == 0 ? 1 : 0;
}

// The default push button carries BS_DEFPUSHBUTTON (Wine's boxes do not answer
// DM_GETDEFID as dialogs do).
int DefaultButton(const std::vector<std::pair<int, HWND>>& buttons)
{
    for (const auto& [id, window] : buttons)
        if ((GetWindowLongA(window, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON) return id;
    return 0;
}

MessageBoxRecord ReadBox(HWND box)
{
    MessageBoxRecord record;
    record.title = WindowText(box);
    record.icon = IconOf(box);
    record.taskModal = TaskModal(box);
    if (HWND text = GetDlgItem(box, 0xFFFF)) record.text = WindowText(text);
    std::vector<std::pair<int, HWND>> buttons;
    EnumChildWindows(box, CollectButton, reinterpret_cast<LPARAM>(&buttons));
    std::sort(buttons.begin(), buttons.end());
    record.defaultButton = DefaultButton(buttons);
    for (auto& [id, window] : buttons)
    {
        record.buttons.push_back(id);
        record.buttonTexts.push_back(WindowText(window));
    }
    return record;
}

// Clicks the button like a user: the button receives BM_CLICK in its own thread.
void Click(HWND box, int id)
{
    HWND button = GetDlgItem(box, id);
    if (button)
        PostMessageA(button, BM_CLICK, 0, 0);
    else
        PostMessageA(box, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), 0);
}

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

struct BoxWatcher::State
{
    DWORD pid;
    std::vector<int> answers;
    std::function<void(const MessageBoxRecord&)> onBox;
    std::vector<MessageBoxRecord> boxes;
    std::atomic<bool> stop{false};
    std::thread thread;
};

BoxWatcher::BoxWatcher(DWORD processId, std::vector<int> answers,
                       std::function<void(const MessageBoxRecord&)> onBox)
    : m_state(new State)
{
    m_state->pid = processId;
    m_state->answers = std::move(answers);
    m_state->onBox = std::move(onBox);
    State* st = m_state;
    st->thread = std::thread(
        [st]
        {
            std::set<HWND> seen;
            size_t next = 0;
            while (!st->stop)
            {
                BoxSearch search{st->pid, &seen, nullptr};
                EnumWindows(FindNewBox, reinterpret_cast<LPARAM>(&search));
                if (search.found)
                {
                    seen.insert(search.found);
                    Sleep(50); // let the box finish setting up its controls
                    MessageBoxRecord record = ReadBox(search.found);
                    if (next < st->answers.size())
                        record.answer = st->answers[next++];
                    else
                    {
                        record.scripted = false;
                        record.answer = record.buttons.empty() ? IDCANCEL : record.buttons.back();
                    }
                    if (st->onBox) st->onBox(record);
                    Click(search.found, record.answer);
                    st->boxes.push_back(record);
                }
                Sleep(20);
            }
        });
}

std::vector<MessageBoxRecord> BoxWatcher::Stop()
{
    if (m_state->thread.joinable())
    {
        m_state->stop = true;
        m_state->thread.join();
    }
    return m_state->boxes;
}

BoxWatcher::~BoxWatcher()
{
    Stop();
    delete m_state;
}

namespace
{
struct TitleSearch
{
    const char* title;
    HWND found;
};

BOOL CALLBACK FindTitledBox(HWND window, LPARAM param)
{
    auto* search = reinterpret_cast<TitleSearch*>(param);
    if (!IsWindowVisible(window) || ClassOf(window) != "#32770") return TRUE;
    if (WindowText(window) != search->title) return TRUE;
    search->found = window;
    return FALSE;
}
} // namespace

HWND FindMessageBox(const char* title)
{
    TitleSearch search{title, nullptr};
    EnumWindows(FindTitledBox, reinterpret_cast<LPARAM>(&search));
    return search.found;
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
            watcher = std::make_unique<BoxWatcher>(session.pid, options.answers, options.onBox);
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

std::string ExeFolder()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string s(path);
    return s.substr(0, s.find_last_of('\\'));
}

std::string TestRoot()
{
    char path[MAX_PATH] = {};
    GetModuleFileNameA(nullptr, path, MAX_PATH);
    std::string s(path);
    std::string name = s.substr(s.find_last_of('\\') + 1);
    name = name.substr(0, name.find_last_of('.'));
    std::string root = Join(Join(ExeFolder(), "..\\test-data"), name);
    char full[MAX_PATH] = {};
    GetFullPathNameA(root.c_str(), MAX_PATH, full, nullptr);
    MakeFolders(full);
    return full;
}

std::string Join(const std::string& a, const std::string& b)
{
    if (a.empty()) return b;
    return (a.back() == '\\' ? a : a + "\\") + b;
}

bool MakeFolders(const std::string& path)
{
    for (size_t i = 3; i <= path.size(); ++i)
        if (i == path.size() || path[i] == '\\')
            CreateDirectoryA(path.substr(0, i).c_str(), nullptr);
    return GetFileAttributesA(path.c_str()) & FILE_ATTRIBUTE_DIRECTORY;
}

bool WriteTextFile(const std::string& path, const std::string& content)
{
    MakeFolders(path.substr(0, path.find_last_of('\\')));
    FILE* f = fopen(path.c_str(), "wb");
    if (!f) return false;
    fwrite(content.data(), 1, content.size(), f);
    return fclose(f) == 0;
}

std::string ReadTextFile(const std::string& path)
{
    FILE* f = fopen(path.c_str(), "rb");
    if (!f) return std::string();
    std::string content;
    char buffer[4096];
    size_t n;
    while ((n = fread(buffer, 1, sizeof buffer, f)) > 0)
        content.append(buffer, n);
    fclose(f);
    return content;
}

bool RemoveTree(const std::string& path)
{
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA(Join(path, "*").c_str(), &data);
    if (find != INVALID_HANDLE_VALUE)
    {
        do
        {
            std::string name = data.cFileName;
            if (name == "." || name == "..") continue;
            std::string full = Join(path, name);
            if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
                RemoveTree(full);
            else
            {
                SetFileAttributesA(full.c_str(), FILE_ATTRIBUTE_NORMAL);
                DeleteFileA(full.c_str());
            }
        } while (FindNextFileA(find, &data));
        FindClose(find);
    }
    return RemoveDirectoryA(path.c_str()) ||
           GetFileAttributesA(path.c_str()) == INVALID_FILE_ATTRIBUTES;
}

bool CopyTree(const std::string& from, const std::string& to)
{
    MakeFolders(to);
    WIN32_FIND_DATAA data;
    HANDLE find = FindFirstFileA(Join(from, "*").c_str(), &data);
    if (find == INVALID_HANDLE_VALUE) return false;
    bool ok = true;
    do
    {
        std::string name = data.cFileName;
        if (name == "." || name == "..") continue;
        if (data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            ok &= CopyTree(Join(from, name), Join(to, name));
        else
            ok &= CopyFileA(Join(from, name).c_str(), Join(to, name).c_str(), FALSE) != 0;
    } while (FindNextFileA(find, &data));
    FindClose(find);
    return ok;
}

bool CopyInto(const std::string& file, const std::string& folder, const std::string& newName)
{
    std::string name = newName.empty() ? file.substr(file.find_last_of('\\') + 1) : newName;
    MakeFolders(folder);
    return CopyFileA(file.c_str(), Join(folder, name).c_str(), FALSE) != 0;
}

namespace
{
bool SetRegValue(const std::string& key, const std::string& name, DWORD type, const void* data,
                 DWORD size)
{
    HKEY handle;
    if (RegCreateKeyExA(HKEY_LOCAL_MACHINE, key.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                        &handle, nullptr) != ERROR_SUCCESS)
        return false;
    LONG rc = RegSetValueExA(handle, name.c_str(), 0, type, static_cast<const BYTE*>(data), size);
    RegCloseKey(handle);
    return rc == ERROR_SUCCESS;
}
} // namespace

bool SetRegString(const std::string& key, const std::string& name, const std::string& value)
{
    return SetRegValue(key, name, REG_SZ, value.c_str(), static_cast<DWORD>(value.size() + 1));
}

bool SetRegDword(const std::string& key, const std::string& name, DWORD value)
{
    return SetRegValue(key, name, REG_DWORD, &value, sizeof value);
}

bool DeleteRegTree(const std::string& key)
{
    LONG rc = RegDeleteTreeA(HKEY_LOCAL_MACHINE, key.c_str());
    return rc == ERROR_SUCCESS || rc == ERROR_FILE_NOT_FOUND;
}

std::vector<TraceWinRecord> ReadTraceWinRecords(const std::string& path)
{
    std::vector<TraceWinRecord> records;
    std::string content = ReadTextFile(path);
    size_t pos = 0;
    while (pos < content.size())
    {
        size_t end = content.find('\n', pos);
        if (end == std::string::npos) end = content.size();
        std::string line = content.substr(pos, end - pos);
        pos = end + 1;
        size_t t1 = line.find('\t'), t2 = line.find('\t', t1 + 1), t3 = line.find('\t', t2 + 1);
        if (t3 == std::string::npos) continue;
        TraceWinRecord r;
        r.windowTag = line.substr(0, t1);
        r.dwData = strtoul(line.substr(t1 + 1, t2 - t1 - 1).c_str(), nullptr, 16);
        r.cbData = strtoul(line.substr(t2 + 1, t3 - t2 - 1).c_str(), nullptr, 10);
        const std::string escaped = line.substr(t3 + 1);
        for (size_t i = 0; i < escaped.size(); ++i)
        {
            if (escaped[i] != '\\' || i + 1 >= escaped.size())
            {
                r.text += escaped[i];
                continue;
            }
            char c = escaped[++i];
            if (c == 'n')
                r.text += '\n';
            else if (c == 't')
                r.text += '\t';
            else if (c == 'r')
                r.text += '\r';
            else if (c == 'x' && i + 2 < escaped.size() + 0)
            {
                r.text += static_cast<char>(strtoul(escaped.substr(i + 1, 2).c_str(), nullptr, 16));
                i += 2;
            }
            else
                r.text += c;
        }
        records.push_back(r);
    }
    return records;
}
} // namespace harness

namespace harness
{
UINT StyleOf(const MessageBoxRecord& box)
{
    // The button sets in the order the box shows them, by their style value.
    static const std::vector<int> kTypes[] = {
        {IDOK},        {IDOK, IDCANCEL},   {IDABORT, IDRETRY, IDIGNORE}, {IDYES, IDNO, IDCANCEL},
        {IDYES, IDNO}, {IDRETRY, IDCANCEL}};
    static const std::pair<const char*, UINT> kIcons[] = {{"hand", MB_ICONHAND},
                                                          {"question", MB_ICONQUESTION},
                                                          {"exclamation", MB_ICONEXCLAMATION},
                                                          {"asterisk", MB_ICONASTERISK}};
    UINT style = 0xF; // no known button set
    for (UINT type = 0; type < 6; ++type)
    {
        std::vector<int> sorted = kTypes[type];
        std::sort(sorted.begin(), sorted.end());
        if (sorted != box.buttons) continue;
        style = type;
        for (size_t i = 0; i < kTypes[type].size(); ++i)
            if (kTypes[type][i] == box.defaultButton) style |= UINT(i) << 8;
    }
    for (const auto& [name, value] : kIcons)
        if (box.icon == name) style |= value;
    if (box.taskModal == 1) style |= MB_TASKMODAL;
    return style;
}
} // namespace harness
