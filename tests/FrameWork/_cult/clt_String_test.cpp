// CltString: sharing, copy on write, buffers, formatting and the text operations.
#include "FrameWork/_cult/Source/clt_String.h"

#include <gtest/gtest.h>

#include <string>

TEST(CltString, CopiesShareUntilOneIsChanged)
{
    CltString first("launcher");
    CltString copy(first);
    EXPECT_EQ(first.c_str(), copy.c_str());
    EXPECT_EQ(first.Header()->nRefs, 2);
    copy.make_upper();
    EXPECT_STREQ(first.c_str(), "launcher");
    EXPECT_STREQ(copy.c_str(), "LAUNCHER");
    EXPECT_EQ(first.Header()->nRefs, 1);
    EXPECT_EQ(copy.Header()->nRefs, 1);

    CltString appended(first);
    appended += "!";
    EXPECT_STREQ(first.c_str(), "launcher");
    EXPECT_STREQ(appended.c_str(), "launcher!");
}

TEST(CltString, LockedBlockIsCopiedNotSharedAndReleaseSetsLength)
{
    CltString s("abc");
    char* buffer = s.get_buffer(16);
    EXPECT_GE(s.Header()->nCapacity, 16u);
    EXPECT_EQ(s.Header()->nLocks, 1);
    CltString copy(s);
    EXPECT_NE(copy.c_str(), s.c_str());
    EXPECT_EQ(s.Header()->nRefs, 1);
    strcpy(buffer, "written here");
    s.release_buffer();
    EXPECT_EQ(s.Header()->nLocks, 0);
    EXPECT_EQ(s.length(), 12u);
    EXPECT_STREQ(copy.c_str(), "abc");
    CltString shared(s);
    EXPECT_EQ(shared.c_str(), s.c_str());
}

TEST(CltString, AssignmentReusesAnUnsharedBlockThatIsLargeEnough)
{
    CltString s("a longer text");
    const char* before = s.c_str();
    s = "short";
    EXPECT_EQ(s.c_str(), before);
    EXPECT_EQ(s.length(), 5u);
    s = s.c_str() + 1; // assigning a part of itself
    EXPECT_STREQ(s.c_str(), "hort");
    CltString other(s);
    s = "x"; // shared: must not write into the other string's block
    EXPECT_STREQ(other.c_str(), "hort");
}

TEST(CltString, FormatSetsTheFormattedLength)
{
    CltString s;
    EXPECT_EQ(s.format("%s is [%s]\n", "DataDir", "D:\\"), 17);
    EXPECT_STREQ(s.c_str(), "DataDir is [D:\\]\n");
    EXPECT_EQ(s.length(), 17u);
    EXPECT_EQ(s.Header()->nCapacity, 1024u);
    std::string big(2000, 'x');
    s.format("%s", big.c_str());
    EXPECT_EQ(s.length(), 1023u);
    s.format("%s|%s", s.c_str(), "self"); // an argument may be the string itself
    EXPECT_EQ(s.length(), 1023u);
    // Results of one character and of none.
    EXPECT_EQ(s.format("%d", 7), 1);
    EXPECT_STREQ(s.c_str(), "7");
    EXPECT_EQ(s.length(), 1u);
    EXPECT_EQ(s.format("%s", ""), 0);
    EXPECT_STREQ(s.c_str(), "");
}

TEST(CltString, FindFindLastAndMid)
{
    struct Case
    {
        const char* text;
        const char* needle;
        int first, last;
    } cases[] = {
        {"abc", "b", 1, 1},   {"$Revision: 24 $", "$", 0, 14},
        {"a,b,c", ",", 1, 3}, {"abc", "abcd", -1, -1},
        {"", "a", -1, -1},
    };
    for (const Case& c : cases)
    {
        CltString s(c.text);
        EXPECT_EQ(s.find(c.needle), c.first) << c.text;
        EXPECT_EQ(s.find_last(c.needle), c.last) << c.text;
    }
    CltString abc("abc");
    EXPECT_STREQ(abc.mid(1).c_str(), "bc");
    EXPECT_STREQ(abc.mid(1, 1).c_str(), "b");
    EXPECT_STREQ(abc.mid(1, 99).c_str(), "bc");
    EXPECT_STREQ(abc.mid(5).c_str(), "abc");
    EXPECT_STREQ(abc.mid(3, 1).c_str(), "abc");
}
