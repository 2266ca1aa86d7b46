// The widget tree's routing: focus walks, capture and a drag's steps, the button state
// machine, a click whose command destroys the clicked button, the screen reader's parts,
// the timer's tickers, and a button with a hot area.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "FrameWork/_cult/Source/clt_AccessibleParts.h"
#include "FrameWork/_cult/Source/clt_Button.h"

namespace
{
std::vector<std::string> g_log;

// Records every system call the tree makes and every command that reaches the root.
class TestRoot : public CltRootWidget
{
  public:
    void CaptureSystemPointerToFocusWindow() override { g_log.push_back("sys-capture-focus"); }
    void CaptureSystemPointer() override { g_log.push_back("sys-capture"); }
    void ReleaseSystemPointer() override { g_log.push_back("sys-release"); }
    bool IsShiftDown() const override { return shift; }
    void PlayFocusSound(const char* path) override
    {
        g_log.push_back(std::string("sound:") + path);
    }
    bool GetWindowRect(CltRect& r) const override
    {
        r = window;
        return true;
    }
    void StartTicks() override { g_log.push_back("ticks-on"); }
    void StopTicks() override { g_log.push_back("ticks-off"); }
    void MoveWindow(const CltRect& r) override
    {
        window = r;
        g_log.push_back("move:" + std::to_string(r.left) + "," + std::to_string(r.top));
    }
    bool OnNotify(uint32_t id, CltWidget* source) override
    {
        notified.push_back({id, source});
        if (onCommand) onCommand(id);
        return true;
    }

    void AnnounceFocus(CltWidget* w) override { announced.push_back(w); }
    bool AskSystemPointerLeave() override { return ++leaveAsks, true; }

    bool shift = false;
    int leaveAsks = 0;
    CltRect window{100, 100, 600, 500};
    std::vector<CltWidget*> announced;
    std::vector<std::pair<uint32_t, CltWidget*>> notified;
    void (*onCommand)(uint32_t) = nullptr;
};

// A widget that logs what reaches it under its name.
template <class Base> class Probe : public Base
{
  public:
    const char* name = "?";
    void Log(const std::string& what) { g_log.push_back(std::string(name) + ":" + what); }
    void OnFocus(bool gained) override
    {
        Log(gained ? "focus+" : "focus-");
        Base::OnFocus(gained);
    }
    void OnMouseEnter() override
    {
        Log("enter");
        Base::OnMouseEnter();
    }
    void OnMouseLeave() override
    {
        Log("leave");
        Base::OnMouseLeave();
    }
    void OnLButtonDown(uint32_t f, int32_t x, int32_t y) override
    {
        Log("down");
        Base::OnLButtonDown(f, x, y);
    }
    void OnLButtonUp(uint32_t f, int32_t x, int32_t y) override
    {
        Log("up");
        Base::OnLButtonUp(f, x, y);
    }
    void OnMouseMove(uint32_t f, int32_t x, int32_t y) override
    {
        Log("move");
        Base::OnMouseMove(f, x, y);
    }
    bool OnNotify(uint32_t id, CltWidget* source) override
    {
        Log("notify" + std::to_string(id));
        (void)source;
        return false;
    }
    ~Probe() override { g_log.push_back(std::string(name) + ":gone"); }
};
using Plain = Probe<CltWidget>;
using Button = Probe<CltButton>;

template <class W>
W* Add(CltWidget* parent, const char* name, CltRect r, uint32_t flags, uint32_t id = 0)
{
    CltWidgetFactoryOf<W> factory;
    W* w = static_cast<W*>(parent->CreateChild(factory, r, flags, id));
    w->name = name;
    return w;
}

intptr_t At(int32_t x, int32_t y)
{
    return intptr_t((uint32_t(uint16_t(y)) << 16) | uint16_t(x));
}

const uint32_t V = CltWidgetVisible, F = CltWidgetFocusable;

class WidgetTree : public ::testing::Test
{
  protected:
    void SetUp() override
    {
        g_log.clear();
        root.Create(nullptr, CltRect(0, 0, 500, 400), V, 0);
    }
    void Send(uint32_t message, int32_t x = 0, int32_t y = 0, uintptr_t w = 0)
    {
        root.HandleMessage(message, w, At(x, y));
    }
    // What was logged since the last call, in one line.
    std::string Take()
    {
        std::string all;
        for (const std::string& s : g_log)
            all += (all.empty() ? "" : " ") + s;
        g_log.clear();
        return all;
    }
    TestRoot root;
};

TEST_F(WidgetTree, KeysWalkTheFocusableSiblings)
{
    Button* b1 = Add<Button>(&root, "b1", CltRect(0, 0, 10, 10), V | F, 101);
    Add<Button>(&root, "x", CltRect(0, 20, 10, 30), V, 200); // not focusable: skipped
    Button* b2 = Add<Button>(&root, "b2", CltRect(0, 40, 10, 50), V | F, 102);
    Button* b3 = Add<Button>(&root, "b3", CltRect(0, 60, 10, 70), V | F, 103);
    struct
    {
        Button* from;
        uintptr_t key;
        bool shift;
        Button* to;
    } cases[] = {
        {b1, CltKeyTab, false, b2},   {b3, CltKeyTab, false, b1},  {b1, CltKeyTab, true, b3},
        {b2, CltKeyTab, true, b1},    {b2, CltKeyLeft, false, b1}, {b2, CltKeyUp, false, b1},
        {b2, CltKeyRight, false, b3}, {b2, CltKeyDown, false, b3}, {b1, CltKeyUp, false, b3},
    };
    for (const auto& c : cases)
    {
        root.SetFocusWidget(c.from);
        root.shift = c.shift;
        g_log.clear();
        Send(CltMsgKeyDown, 0, 0, c.key);
        EXPECT_EQ(root.Focus(), c.to) << c.from->name << " key " << c.key << " shift " << c.shift;
        EXPECT_EQ(root.FocusId(), c.to->Id());
        EXPECT_EQ(Take(), std::string(c.from->name) + ":focus- " + c.to->name + ":focus+");
        EXPECT_EQ(c.from->State(), ButtonNormal);
        EXPECT_EQ(c.to->State(), ButtonHighlighted);
    }
}

TEST_F(WidgetTree, CaptureRoutesTheMouseAndHidesOtherWidgets)
{
    Button* b1 = Add<Button>(&root, "b1", CltRect(10, 10, 50, 50), V | F, 101);
    Add<Button>(&root, "b2", CltRect(60, 10, 100, 50), V | F, 102);
    Send(CltMsgMouseMove, 20, 20);
    Take();
    Send(CltMsgLButtonDown, 20, 20);
    EXPECT_EQ(Take(), "sys-capture-focus b1:down");
    EXPECT_EQ(root.GetCapture(), b1);
    struct
    {
        uint32_t message;
        int32_t x, y;
        const char* log;
        int32_t state;
        int32_t windowMoved = 0; // before the message, with the pointer
    } steps[] = {
        {CltMsgMouseMove, 70, 20, "b1:move b1:leave", ButtonHighlighted}, // b2 hears nothing
        {CltMsgMouseMove, 80, 20, "b1:move", ButtonHighlighted},
        {CltMsgMouseMove, 80, 20, "", ButtonHighlighted},           // a repeat
        {CltMsgMouseMove, 80, 20, "b1:move", ButtonHighlighted, 5}, // a drag's step
        {CltMsgMouseMove, 30, 20, "b1:move b1:enter", ButtonPressed},
        {CltMsgMouseMove, 70, 20, "b1:move b1:leave", ButtonHighlighted},
        {CltMsgLButtonUp, 70, 20, "sys-release b1:up", ButtonHighlighted},
        {CltMsgMouseMove, 71, 20, "b2:enter b1:focus- sound:H b2:focus+", ButtonNormal},
    };
    b1->SetSound("H");
    for (const auto& s : steps)
    {
        root.window.Offset(s.windowMoved, 0);
        Send(s.message, s.x, s.y);
        EXPECT_EQ(Take(), s.log) << s.x << "," << s.y;
        EXPECT_EQ(b1->State(), s.state) << s.x << "," << s.y;
    }
    EXPECT_TRUE(root.notified.empty()); // released outside: no click
    EXPECT_FALSE(root.HasCapture());
}

// Each row: the presses and moves a user makes on one button, whose rectangle is
// (10, 10, 50, 50); the state after each step and the clicks at the end.
TEST_F(WidgetTree, ButtonStateMachine)
{
    enum Step
    {
        Enter,
        Leave,
        Down,
        UpInside,
        UpOnEdge,
        UpOutside,
        Return
    };
    struct
    {
        const char* what;
        bool focusable;
        std::vector<Step> steps;
        std::vector<int32_t> states;
        size_t clicks;
    } cases[] = {
        {"click", true, {Enter, Down, UpInside}, {2, 3, 2}, 1},
        {"release on the right-bottom edge", true, {Enter, Down, UpOnEdge}, {2, 3, 2}, 1},
        {"drag off and back", true, {Enter, Down, Leave, Enter, UpInside}, {2, 3, 2, 3, 2}, 1},
        {"drag off and release", true, {Enter, Down, Leave, UpOutside}, {2, 3, 2, 2}, 0},
        {"leave keeps the focused look", true, {Enter, Leave}, {2, 2}, 0},
        {"release without a press", true, {Enter, UpInside}, {2, 2}, 0},
        {"enter", true, {Return}, {1}, 0},
        {"plain click", false, {Enter, Down, UpInside}, {2, 3, 2}, 1},
        {"plain drag off and release", false, {Enter, Down, Leave, UpOutside}, {2, 3, 2, 1}, 0},
        {"plain drag back", false, {Enter, Down, Leave, Enter, UpInside}, {2, 3, 2, 3, 2}, 1},
        {"plain leave", false, {Enter, Leave}, {2, 1}, 0},
    };
    for (const auto& c : cases)
    {
        TestRoot r;
        r.Create(nullptr, CltRect(0, 0, 500, 400), V, 0);
        Button* b = Add<Button>(&r, "b", CltRect(10, 10, 50, 50), c.focusable ? V | F : V, 7);
        ASSERT_EQ(c.steps.size(), c.states.size()) << c.what;
        for (size_t i = 0; i < c.steps.size(); ++i)
        {
            auto [x, y] = std::pair<int32_t, int32_t>{20, 20};
            uint32_t message = CltMsgMouseMove;
            switch (c.steps[i])
            {
            case Enter: break;
            case Leave: x = 200, y = 200; break;
            case Down: message = CltMsgLButtonDown; break;
            case UpInside: message = CltMsgLButtonUp; break;
            case UpOnEdge: message = CltMsgLButtonUp, x = 50, y = 50; break;
            case UpOutside: message = CltMsgLButtonUp, x = 200, y = 200; break;
            case Return: r.ActivateFocus(); break;
            }
            if (c.steps[i] != Return) r.HandleMessage(message, 0, At(x, y));
            EXPECT_EQ(b->State(), c.states[i]) << c.what << " step " << i;
        }
        EXPECT_EQ(r.notified.size(), c.clicks) << c.what;
        EXPECT_FALSE(b->IsPressed()) << c.what;
    }
}

// The dangerous case: the command of a click removes the clicked button and its siblings
// (a page change). Nothing may touch the button afterwards; ASan reports any access.
Plain* g_page = nullptr;
TEST_F(WidgetTree, AClickWhoseCommandDestroysTheButtonIsSafe)
{
    g_page = Add<Plain>(&root, "page", CltRect(0, 0, 400, 300), V, 0xE002);
    Button* b1 = Add<Button>(g_page, "b1", CltRect(10, 10, 50, 50), V | F, 101);
    Add<Button>(g_page, "b2", CltRect(10, 60, 50, 100), V | F, 102);
    b1->SetSound("H");
    root.onCommand = [](uint32_t id)
    {
        if (id != 101) return;
        while (g_page->FirstChild())
            g_page->RemoveChild(g_page->FirstChild());
    };
    Send(CltMsgMouseMove, 20, 20);
    Send(CltMsgLButtonDown, 20, 20);
    Take();
    Send(CltMsgLButtonUp, 20, 20);
    EXPECT_EQ(Take(), "sys-release b1:up b1:notify101 page:notify101 b1:gone b2:gone");
    ASSERT_EQ(root.notified.size(), 1u);
    EXPECT_EQ(root.Focus(), nullptr);
    EXPECT_EQ(root.Hover(), nullptr);
    Send(CltMsgMouseMove, 21, 21);
    Send(CltMsgKeyDown, 0, 0, CltKeyReturn);
    EXPECT_EQ(Take(), "page:enter"); // the page under the pointer; no focus to activate

    // The same by the keyboard.
    Button* b3 = Add<Button>(g_page, "b3", CltRect(10, 10, 50, 50), V | F, 101);
    root.SetFocusWidget(b3);
    Take();
    Send(CltMsgKeyDown, 0, 0, CltKeyReturn);
    EXPECT_EQ(Take(), "b3:notify101 page:notify101 b3:gone");
    EXPECT_EQ(root.Focus(), nullptr);
}

} // namespace

// A screen reader's numbers: named visible widgets in tree order; a hit on a part's unnamed
// child is the part; the posted activation runs only if the part still has the id asked.
TEST_F(WidgetTree, AccessiblePartsAreNumberedInTreeOrder)
{
    Plain* panel = Add<Plain>(&root, "panel", CltRect(0, 0, 400, 300), V);
    Button* a = Add<Button>(panel, "a", CltRect(10, 10, 50, 50), V | F, 101);
    Button* hidden = Add<Button>(panel, "hidden", CltRect(60, 10, 90, 50), F, 102);
    Button* c = Add<Button>(panel, "c", CltRect(100, 10, 150, 50), V | F, 103);
    Add<Plain>(c, "inner", CltRect(110, 20, 120, 30), V);
    Button* d = Add<Button>(&root, "d", CltRect(300, 300, 350, 350), V, 104);
    for (Button* b : {a, hidden, c, d})
        b->SetName(b->name);
    Add<Button>(panel, "unnamed", CltRect(200, 10, 250, 50), V | F, 105);
    EXPECT_EQ(clt_AccessiblePartCount(&root), 3);
    std::vector<CltWidget*> parts;
    for (int32_t n = 0; n <= 4; ++n)
        parts.push_back(clt_AccessiblePart(&root, n));
    EXPECT_EQ(parts, (std::vector<CltWidget*>{nullptr, a, c, d, nullptr}));
    EXPECT_EQ(clt_AccessiblePartNumber(&root, c), 2);
    EXPECT_EQ(clt_AccessiblePartNumber(&root, hidden), 0);
    struct
    {
        int32_t x, y, part;
    } hits[] = {{10, 10, 1}, {115, 25, 2}, {350, 350, 3}, {5, 5, 0}, {220, 20, 0}};
    for (const auto& h : hits)
        EXPECT_EQ(clt_AccessiblePartAt(&root, h.x, h.y), h.part) << h.x << "," << h.y;

    root.SetFocusWidget(c);
    EXPECT_EQ(root.announced, std::vector<CltWidget*>{c});
    Take();
    Send(CltMsgActivatePart, 0, 0, 2);
    root.HandleMessage(CltMsgActivatePart, 2, 101); // the id of another page's button
    EXPECT_EQ(Take(), "");
    root.HandleMessage(CltMsgActivatePart, 2, 103);
    EXPECT_EQ(Take(), "c:notify103 panel:notify103");
}

TEST_F(WidgetTree, TheTimerRunsWhileSomeWidgetAsksForTicks)
{
    Plain* panel = Add<Plain>(&root, "panel", CltRect(0, 0, 100, 100), V);
    Plain* a = Add<Plain>(panel, "a", CltRect(0, 0, 10, 10), V);
    Plain* b = Add<Plain>(&root, "b", CltRect(20, 0, 30, 10), V);
    struct
    {
        Plain* widget;
        bool wants;
        const char* log;
    } steps[] = {
        {a, true, "ticks-on"},   {b, true, ""},  {a, true, ""},         {a, false, ""},
        {b, false, "ticks-off"}, {b, false, ""}, {a, true, "ticks-on"},
    };
    Take();
    for (const auto& s : steps)
    {
        s.widget->WantTicks(s.wants);
        EXPECT_EQ(Take(), s.log) << s.widget->name << " " << s.wants;
    }
    root.RemoveChild(panel); // a goes with its panel and stops asking
    EXPECT_EQ(Take(), "panel:gone a:gone ticks-off");
    EXPECT_EQ(root.Tickers(), 0);
}

// A title button lit over its hot area only, (107, 1)-(124, 22) in design coordinates, edges
// included: every pointer position counts, whoever holds the pointer; a press in the area
// shows the pressed look, leaving the area the resting look, coming back the hover look.
TEST_F(WidgetTree, AButtonWithAHotAreaFollowsThePointerOverIt)
{
    enum Step
    {
        Move,
        Press,
        Release,
        LeaveWindow,
        Rest,
        CaptureElsewhere
    };
    struct
    {
        Step step;
        int32_t x, y, look;
    } steps[] = {
        {Move, 106, 10, 1},
        {Move, 107, 10, 2},
        {Move, 124, 22, 2},
        {Press, 124, 22, 3},
        {Move, 120, 10, 3},
        {Move, 125, 10, 1},
        {Move, 120, 10, 2},
        {Release, 120, 10, 2},
        {LeaveWindow, 0, 0, 1},
        {Move, 120, 10, 2},
        {Rest, 0, 0, 1},
        {Move, 121, 10, 1},
        {Move, 120, 23, 1},
        {Press, 102, 10, 1},
        {Release, 102, 10, 1},
        {Move, 101, 0, 1},
        {CaptureElsewhere, 0, 0, 1},
        {Move, 110, 5, 2},
        {Move, 140, 5, 1},
    };
    Button* b = Add<Button>(&root, "b", CltRect(100, 0, 130, 23), V, 0xE001);
    Plain* caption = Add<Plain>(&root, "caption", CltRect(0, 0, 500, 30), V);
    b->SetHotArea(CltRect(107, 1, 124, 22));
    for (const auto& s : steps)
    {
        switch (s.step)
        {
        case Move: Send(CltMsgMouseMove, s.x, s.y); break;
        case Press: Send(CltMsgLButtonDown, s.x, s.y); break;
        case Release: Send(CltMsgLButtonUp, s.x, s.y); break;
        case LeaveWindow: Send(CltMsgMouseLeave); break;
        case Rest: b->ShowResting(); break;
        case CaptureElsewhere: root.SetCapture(caption); break;
        }
        EXPECT_EQ(b->Look(), s.look) << "step " << (&s - steps) << " at " << s.x << "," << s.y;
    }
    EXPECT_EQ(root.notified.size(), 2u); // both releases were clicks
    EXPECT_EQ(root.leaveAsks, 2);        // asked once, and again after the pointer left

    // At 150 % the window coordinates are turned into design ones first.
    root.SetDpi(144);
    root.ReleaseCapture();
    Send(CltMsgMouseMove, 160, 10); // 106 in design coordinates
    EXPECT_EQ(b->Look(), ButtonNormal);
    Send(CltMsgMouseMove, 161, 10); // 107
    EXPECT_EQ(b->Look(), ButtonHighlighted);
}
