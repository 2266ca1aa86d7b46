// The command-line parser: the switches it stores, in order, and where it stops.
#include "test_Support.h"

#include "FrameWork/_cult/Source/clt_CommandLine.h"

#include <gtest/gtest.h>

TEST(CltCommandLine, StoresSwitchesAndStopsWhereTheSyntaxEnds)
{
    struct Case
    {
        const char* text;
        int result;
        std::vector<std::string> traced; // the environment writes, in order
    } cases[] = {
        {"", 1, {}},
        {"/x=1 -y", 1, {"X is [1]\n", "Y is empty.\n"}},
        {"-Anchor=\"Main Page\"", 1, {"ANCHOR is [Main Page]\n"}},
        {"-Anchor=Main Page", 0, {"ANCHOR is [Main]\n"}},
        {"-a= -b=2", 1, {"A is empty.\n", "B is [2]\n"}},
        {"-a=\"open", 1, {"A is [open]\n"}},
        {"\t-a", 0, {}},
        {"setup -x", 0, {}},
        {"-A-B", 0, {"A is empty.\n"}},
        {"-NO_SOUND", 0, {"NO is empty.\n"}},
        {"  -v   /i ", 1, {"V is empty.\n", "I is empty.\n"}},
        {"-x=1 -x=2", 1, {"X is [1]\n", "X is [2]\n"}},
        {"-=x -", 1, {}},                    // empty names are read and ignored
        {"-q=\"a\"b -r", 0, {"Q is [a]\n"}}, // one character after the quote is consumed
        {"-a\"b\"", 0, {"A is empty.\n"}},   // the quote after a name is consumed
    };
    for (const Case& c : cases)
    {
        TestScope scope;
        EXPECT_EQ(clt_ParseCommandLine(c.text), c.result) << c.text;
        EXPECT_EQ(scope.sink->texts, c.traced) << c.text;
    }
}

TEST(CltCommandLine, LongNamesAndValuesAreCutAt1023)
{
    TestScope scope;
    std::string text = "-" + std::string(1500, 'N') + "=" + std::string(1500, 'v');
    EXPECT_EQ(clt_ParseCommandLine(text.c_str()), 1);
    EXPECT_EQ((*scope.env)[std::string(1023, 'N').c_str()].length(), 1023u);
}
