// JoinPath and keyword values.
#include "FrameWork/_cult/Source/clt_Keyword.h"
#include "FrameWork/_lfx/Source/lfx_Path.h"

#include <gtest/gtest.h>

TEST(LfxPath, JoinPathPutsExactlyOneBackslashAtTheSeam)
{
    struct Case
    {
        const char *folder, *name, *expected;
    } cases[] = {
        {"D:\\", "Install", "D:\\Install"},
        {"D:\\Game", "Install", "D:\\Game\\Install"},
        {"D:\\Game\\", "\\setup.ini", "D:\\Game\\setup.ini"},
        {"D:\\Game", "\\GameData", "D:\\Game\\GameData"},
        {"D:\\Game", "", "D:\\Game"},
        {"", "E:", "E:\\"},
        {"", "E:\\", "E:\\"},
        {"", "E:x", "E:\\"},
        {"", "Software\\", "Software"},
        {"", "B", "B"},
        {"Software", "A", "Software\\A"},
        {"", "", ""},
    };
    for (const Case& c : cases)
        EXPECT_STREQ(JoinPath(c.folder, c.name).c_str(), c.expected) << c.folder << " + " << c.name;
    // The registry folder with Company missing: Software\B\1.0.
    EXPECT_STREQ(JoinPath(JoinPath(JoinPath("Software", ""), "B"), "1.0").c_str(),
                 "Software\\B\\1.0");
}

TEST(CltKeyword, ValueBetweenColonAndClosingDollar)
{
    struct Case
    {
        const char *text, *value;
    } cases[] = {{"$Build: 3 $", "3"},
                 {"$Revision: 24 $", "24"},
                 {"$Modtime: 2/22/02 5:26p $", "2/22/02 5:26p"},
                 {"no keyword", ""},
                 {"$Broken: value", ""}};
    for (const Case& c : cases)
    {
        CltString out("stale");
        EXPECT_STREQ(clt_GetKeywordValue(out, c.text).c_str(), c.value) << c.text;
    }
}
