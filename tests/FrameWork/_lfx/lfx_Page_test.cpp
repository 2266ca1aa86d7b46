// The button page on a widget tree without a window: the focus memory that all pages share,
// with entries that one page has and another has not, or has removed. (The layout, the
// commands and Escape are the launcher walk's, on the product's pages.)
#include "FrameWork/_cult/Source/clt_TextButton.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Page.h"

#include <gtest/gtest.h>

#include <vector>

namespace
{
class ListPage : public LfxButtonPage
{
  public:
    explicit ListPage(std::vector<uint32_t> list) : m_list(std::move(list)) { m_list.push_back(0); }
    CltString GetName() override { return "TEST"; }
    void ShowTitle() override {}
    const uint32_t* GetButtonList() override { return m_list.data(); }
    void OnCommand(uint32_t) override {}

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
    void Attach(ListPage& page) { page.m_pLauncher = &launcher; }
};

std::vector<uint32_t> Entries(int n)
{
    std::vector<uint32_t> list;
    for (int i = 0; i < n; ++i)
        list.push_back(0x1000 + uint32_t(i));
    return list;
}

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
        ListPage first(Entries(c.firstEntries)), second(Entries(c.secondEntries)),
            third(Entries(2));
        for (ListPage* p : {&first, &second, &third})
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
