// LfxMain's choice of one page per name by the Language text (PreInitializePages, FindPage),
// with pages of the test's own. (Navigation is the launcher walk's, on the product's pages.)
#include "FrameWork/_cult/Source/clt_Environment.h"
#include "FrameWork/_lfx/Source/lfx_Launcher.h"
#include "FrameWork/_lfx/Source/lfx_Page.h"
#include "FrameWork/_lfx/Source/lfx_System.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
class FakePage : public LfxPage
{
  public:
    FakePage(const char* name, const char* variant) : m_name(name), m_variant(variant) {}
    CltString GetName() override { return m_name; }
    CltString GetVariant() override { return m_variant; }
    int Show() override { return 1; }
    int Hide(bool) override { return 0; }
    std::string Label() const { return std::string(m_name) + "/" + m_variant; }

  private:
    const char* m_name;
    const char* m_variant;
};

LfxLauncher g_launcher;

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
    for (FakePage* p : pages)
        g_lstRegisteredPages->PushBack(p);
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
