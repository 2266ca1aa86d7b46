// LfxMain's page choice (PreInitializePages, FindPage) and navigation (ShowPage, GoBack)
// with pages and a launcher of the test's own.
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_cult/Source/clt_State.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Page.h"
#include "FrameWork/_lfx/Source/lfx_System.h"

#include <gtest/gtest.h>

#include <cstring>
#include <new>
#include <string>
#include <vector>

namespace
{
std::vector<std::string> g_events;

class FakePage : public LfxPage
{
  public:
    FakePage(const char* name, const char* variant) : m_name(name), m_variant(variant) {}
    CltString GetName() override { return m_name; }
    CltString GetVariant() override { return m_variant; }
    int Show() override
    {
        g_events.push_back("show " + Label());
        return 1;
    }
    int Hide(bool forward) override
    {
        g_events.push_back(std::string(forward ? "hide-forward " : "hide-back ") + Label());
        return 0;
    }
    int OnAttach() override
    {
        g_events.push_back("attach " + Label());
        return 1;
    }
    std::string Label() const { return std::string(m_name) + "/" + m_variant; }

  private:
    const char* m_name;
    const char* m_variant;
};

class FakeLauncher : public LfxLauncher
{
  public:
    int DestroyMainWindow() override
    {
        g_events.push_back("destroy window");
        return 1;
    }
};

FakeLauncher g_launcher;

// Gives LfxMain fresh lists holding the given registered pages.
void Register(const std::vector<FakePage*>& pages)
{
    delete g_lstRegisteredPages;
    delete g_LfxMain.m_lstPages;
    delete g_LfxMain.m_lstPageStack;
    g_lstRegisteredPages = new LfxPageList;
    g_LfxMain.m_lstPages = new LfxPageList;
    g_LfxMain.m_lstPageStack = new LfxPageList;
    g_LfxMain.m_pLauncher = &g_launcher;
    g_LfxMain.m_strVersion = "v\n";
    for (FakePage* p : pages)
        g_lstRegisteredPages->PushBack(p);
    g_events.clear();
}

std::vector<std::string> Active()
{
    std::vector<std::string> labels;
    for (int32_t i = g_LfxMain.m_lstPages->Head(); i != -1; i = g_LfxMain.m_lstPages->Next(i))
        labels.push_back(static_cast<FakePage*>(g_LfxMain.m_lstPages->Element(i))->Label());
    return labels;
}
} // namespace

TEST(LfxMainPages, LanguageChoosesOnePagePerName)
{
    FakePage install("INSTALL", ""), launch("LAUNCH", ""), launchInt("LAUNCH", "INT"),
        launchDe("LAUNCH", "DE"), help("HELP", "");
    struct Case
    {
        const char* language;
        std::vector<FakePage*> registered;
        std::vector<std::string> active;
    } cases[] = {
        {"INT", {&install, &launch, &launchInt, &help}, {"LAUNCH/INT", "INSTALL/", "HELP/"}},
        {"INT", {&install, &launchInt, &launch, &help}, {"LAUNCH/INT", "INSTALL/", "HELP/"}},
        {"FR", {&install, &launch, &launchInt, &help}, {"INSTALL/", "LAUNCH/", "HELP/"}},
        {"FR,INT", {&install, &launch, &launchInt, &help}, {"LAUNCH/INT", "INSTALL/", "HELP/"}},
        // An empty item in the middle asks for the untagged pages; the search goes on.
        {"FR,,INT", {&install, &launchInt}, {"INSTALL/", "LAUNCH/INT"}},
        {"FR,,INT", {&install, &launch, &launchInt, &help}, {"INSTALL/", "LAUNCH/", "HELP/"}},
        {"de,INT", {&launch, &launchInt, &launchDe}, {"LAUNCH/DE"}},
        {"INT ", {&launch, &launchInt}, {"LAUNCH/"}}, // items are not trimmed
        {"", {&install, &launchInt}, {"INSTALL/"}},   // a tag nobody asks for is never chosen
    };
    for (const Case& c : cases)
    {
        Register(c.registered);
        g_Env.Set("Language", c.language, false);
        EXPECT_EQ(g_LfxMain.PreInitializePages(), 1);
        EXPECT_EQ(Active(), c.active) << c.language;
    }
}

TEST(LfxMainPages, ShowPageAndGoBackKeepAStack)
{
    FakePage launch("LAUNCH", ""), help("HELP", "");
    Register({&launch, &help});
    g_Env.Set("Language", "", false);
    g_LfxMain.PreInitializePages();
    g_events.clear();

    EXPECT_EQ(g_LfxMain.GetCurrentPage(), nullptr);
    EXPECT_EQ(g_LfxMain.ShowPage("install"), 0);
    EXPECT_EQ(g_LfxMain.ShowPage("launch"), 0); // names compare case-sensitively
    EXPECT_EQ(g_LfxMain.ShowPage("LAUNCH"), 1);
    EXPECT_EQ(g_LfxMain.ShowPage("HELP"), 1);
    EXPECT_EQ(g_LfxMain.ShowPage("HELP"), 1); // a page may stand on the stack twice
    EXPECT_EQ(g_LfxMain.GetCurrentPage(), &help);
    EXPECT_EQ(g_LfxMain.GoBack(), 1);
    EXPECT_EQ(g_LfxMain.GoBack(), 1);
    EXPECT_EQ(g_LfxMain.GetCurrentPage(), &launch);
    EXPECT_EQ(g_LfxMain.GoBack(), 1);
    EXPECT_EQ(g_LfxMain.GetCurrentPage(), nullptr);
    EXPECT_EQ(g_events,
              (std::vector<std::string>{"show LAUNCH/", "hide-forward LAUNCH/", "show HELP/",
                                        "hide-forward HELP/", "show HELP/", "hide-back HELP/",
                                        "show HELP/", "hide-back HELP/", "show LAUNCH/",
                                        "hide-back LAUNCH/", "destroy window"}));
}

// Registrations reach LfxMain before its constructor runs (static construction order):
// the constructor must leave every field that registration stores as it finds it. A
// default member initialiser added to one of them would wipe every registration.
TEST(LfxMainConstruction, TheConstructorKeepsWhatRegistrationStored)
{
    CltApp* app = clt_GetState()->m_pApp;
    alignas(LfxMain) static unsigned char storage[sizeof(LfxMain)];
    memset(storage, 0, sizeof storage);
    LfxMain* early = reinterpret_cast<LfxMain*>(storage);
    auto* pages = reinterpret_cast<LfxPageList*>(uintptr_t(0x1000));
    auto* stack = reinterpret_cast<LfxPageList*>(uintptr_t(0x2000));
    auto* launcher = reinterpret_cast<LfxLauncher*>(uintptr_t(0x3000));
    auto* sink = reinterpret_cast<CltTraceWinSink*>(uintptr_t(0x4000));
    auto* setup = reinterpret_cast<CVokSetup*>(uintptr_t(0x5000));
    early->m_lstPages = pages;
    early->m_lstPageStack = stack;
    early->m_pLauncher = launcher;
    early->m_pTraceWinSink = sink;
    early->m_pVokSetup = setup;
    early->m_hSetupDll = reinterpret_cast<void*>(uintptr_t(0x6000));
    LfxMain* made = new (storage) LfxMain; // never destroyed: its fields are not its own
    EXPECT_EQ(made->m_lstPages, pages);
    EXPECT_EQ(made->m_lstPageStack, stack);
    EXPECT_EQ(made->m_pLauncher, launcher);
    EXPECT_EQ(made->m_pTraceWinSink, sink);
    EXPECT_EQ(made->m_pVokSetup, setup);
    EXPECT_EQ(made->m_hSetupDll, reinterpret_cast<void*>(uintptr_t(0x6000)));
    clt_GetState()->m_pApp = app; // the new object recorded itself as the application
}
