// JoinPath. (The keyword values are read in the version box, which the walk reads whole.)
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
}
