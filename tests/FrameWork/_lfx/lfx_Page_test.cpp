// The button page on a widget tree without a window: layout, ids, removed entries, the
// focus memory shared by all pages, and the messages that become commands.
#include "FrameWork/_cult/Source/clt_TextButton.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Page.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
class RecordingPage : public LfxButtonPage
{
  public:
    explicit RecordingPage(std::vector<uint32_t> list) : m_list(std::move(list))
    {
        m_list.push_back(0);
    }
    CltString GetName() override { return "TEST"; }
    void ShowTitle() override { ++titles; }
    const uint32_t* GetButtonList() override { return m_list.data(); }
    void OnCommand(uint32_t command) override { commands.push_back(command); }

    std::vector<uint32_t> commands;
    int titles = 0;

  private:
    std::vector<uint32_t> m_list;
};

// A root and a background panel, with the three button images, as the main window lends them.
struct Surface
{
    CltRootWidget root;
    CltImage face;
    LfxLauncher launcher;
    LfxPageSurface surface;

    Surface()
    {
        root.Create(nullptr, CltRect(0, 0, 500, 470), CltWidgetVisible, 0);
        static CltWidgetFactoryOf<CltWidget> panels;
        surface.root = &root;
        surface.panel = root.CreateChild(panels, CltRect(0, 0, 500, 470), CltWidgetVisible, 0xE002);
        face.Create(g_pfArgb32, 270, 40, OriginTopLeft);
        surface.normal = surface.pressed = surface.focused = &face;
        launcher.m_pSurface = &surface;
    }
    void Attach(RecordingPage& page) { page.m_pLauncher = &launcher; }

    // The page buttons as (id, left, top, right, bottom), in child order.
    std::vector<std::vector<int32_t>> Buttons() const
    {
        std::vector<std::vector<int32_t>> out;
        for (CltWidget* w = surface.panel->FirstChild(); w; w = w->NextSibling())
            out.push_back({int32_t(w->Id()), w->Rect().left, w->Rect().top, w->Rect().right,
                           w->Rect().bottom});
        return out;
    }
};

std::vector<uint32_t> Entries(int n)
{
    std::vector<uint32_t> list;
    for (int i = 0; i < n; ++i)
        list.push_back(0x1000 + uint32_t(i));
    return list;
}
} // namespace

TEST(ButtonPage, RemovedEntriesLeaveNoGapAndKeepTheirIds)
{
    Surface s;
    RecordingPage page(Entries(4));
    s.Attach(page);
    page.RemoveButton(0x10002); // the high word is ignored
    EXPECT_EQ(page.Show(), 1);
    EXPECT_EQ(s.Buttons(), (std::vector<std::vector<int32_t>>{{101, 194, 200, 464, 240},
                                                              {103, 194, 247, 464, 287},
                                                              {104, 194, 294, 464, 334}}));
    EXPECT_EQ(page.ButtonCount(), 4u);
    EXPECT_EQ(page.titles, 1);
    EXPECT_EQ(s.root.FocusId(), 101u);
    // Escape runs the last entry's command; a button's command is its id less 100.
    EXPECT_EQ(page.HandleMessage(WM_KEYDOWN, VK_ESCAPE, 0), 0);
    EXPECT_EQ(page.HandleMessage(WM_KEYDOWN, 'A', 0), 0);
    EXPECT_EQ(page.HandleMessage(WM_COMMAND, 103, 0), 1);
    EXPECT_EQ(page.HandleMessage(WM_COMMAND, 0xE003, 0), 1);
    EXPECT_EQ(page.HandleMessage(WM_TIMER, 1, 0), 1);
    EXPECT_EQ(page.commands, (std::vector<uint32_t>{4, 3, 0xE003 - 100}));
    EXPECT_EQ(page.Hide(true), 0);
    EXPECT_TRUE(s.Buttons().empty());
}

TEST(ButtonPage, EscapeRunsTheLastCommandEvenWhenItsButtonIsRemoved)
{
    Surface s;
    RecordingPage page(Entries(3));
    s.Attach(page);
    page.RemoveButton(3);
    page.Show();
    EXPECT_EQ(s.Buttons().size(), 2u);
    page.HandleMessage(WM_KEYDOWN, VK_ESCAPE, 0);
    EXPECT_EQ(page.commands, std::vector<uint32_t>{3});
}

namespace
{
void FocusId(Surface& s, uint32_t id)
{
    for (CltWidget* w = s.surface.panel->FirstChild(); w; w = w->NextSibling())
        if (w->Id() == id) s.root.SetFocusWidget(w);
}
} // namespace

// Three pages deep and back: the first page gets the entry remembered on the second.
TEST(ButtonPage, TheFocusMemoryIsSharedByAllPages)
{
    struct Case
    {
        const char* name;
        int firstEntries, firstRemoved; // the first page, and a command it removes (or 0)
        int secondEntries;
        uint32_t focusOnSecond;
        uint32_t expected; // the focus on the first page after going back twice
    };
    const Case cases[] = {
        {"an entry the first page has", 4, 0, 5, 103, 103},
        {"an entry past the first page's end gives the first", 3, 0, 5, 105, 101},
        {"a removed entry gives the next button", 4, 3, 5, 103, 104},
        {"a removed last entry gives the first button", 4, 4, 5, 104, 101},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        Surface s;
        RecordingPage first(Entries(c.firstEntries)), second(Entries(c.secondEntries)),
            third(Entries(2));
        for (RecordingPage* p : {&first, &second, &third})
            s.Attach(*p);
        if (c.firstRemoved) first.RemoveButton(uint32_t(c.firstRemoved));
        first.Show();
        first.Hide(true);
        second.Show();
        FocusId(s, c.focusOnSecond);
        second.Hide(true);
        third.Show();
        third.Hide(false);
        second.Show();
        EXPECT_EQ(s.root.FocusId(), c.focusOnSecond);
        second.Hide(false);
        first.Show();
        EXPECT_EQ(s.root.FocusId(), c.expected);
    }
}

TEST(ButtonPage, AListLongerThanNineEntriesShowsNine)
{
    Surface s;
    RecordingPage page(Entries(12));
    s.Attach(page);
    page.Show();
    EXPECT_EQ(s.Buttons().size(), 9u);
    EXPECT_EQ(s.Buttons().back()[0], 109);
    EXPECT_EQ(page.ButtonCount(), 9u);
}
