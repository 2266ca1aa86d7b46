// CltEnvironment: names, tracing of writes and Expand. (Its dump, and the assertion that a
// required value left empty fails, are boxes that the walk reads.)
#include "test_Support.h"

#include <gtest/gtest.h>

#include <string>

TEST(CltEnvironment, NamesIgnoreCaseAndEveryWriteIsTracedAsPassed)
{
    TestScope scope;
    CltEnvironment& env = *scope.env;
    env.Set("datadir", "D:\\Install", true);
    env.Set("LauncherDir", "D:\\", true);
    env.Set("Empty", "", false);
    env.Set("DataDir", "E:\\Data", true);
    EXPECT_STREQ(env["DATADIR"].c_str(), "E:\\Data");
    EXPECT_STREQ(env["Empty"].c_str(), "");
    EXPECT_EQ(env.Has("empty", 10), 10);
    EXPECT_EQ(env.Has("Missing", 10), 0);
    EXPECT_EQ(scope.sink->texts,
              (std::vector<std::string>{"datadir is [D:\\Install]\n", "LauncherDir is [D:\\]\n",
                                        "Empty is empty.\n", "DataDir is [E:\\Data]\n"}));
}

TEST(CltEnvironment, ExpandReplacesReferences)
{
    TestScope scope;
    CltEnvironment& env = *scope.env;
    env.Set("LauncherDir", "D:\\", false);
    env.Set("A", "$[B]", false);
    env.Set("A$[B", "nested", false);
    struct Case
    {
        const char* text;
        const char* expected;
    } cases[] = {
        {"plain text", "plain text"},
        {"Comparing LauncherDir [$[LauncherDir]] and InstallDir [$[InstallDir]].\n",
         "Comparing LauncherDir [D:\\] and InstallDir [[Undefined]].\n"},
        {"$$[X]", "$$[X]"},
        {"cost $5", "cost $5"},
        {"$[a]$[a]", "$[B]$[B]"}, // an inserted value is not scanned again
        {"end$", "end"},
        {"a$[bc", "a"},
        {"$[]", "[Undefined]"},
        {"$[A$[B]]", "nested]"},
        {"$[launcherdir]x", "D:\\x"},
        {"", ""},
    };
    for (const Case& c : cases)
    {
        CltString out("stale");
        EXPECT_STREQ(env.Expand(out, c.text).c_str(), c.expected) << c.text;
    }
}

TEST(CltEnvironment, ExpandCutsLongResultsAt1023)
{
    TestScope scope;
    std::string big(1500, 'v');
    scope.env->Set("Big", big.c_str(), false);
    CltString out;
    scope.env->Expand(out, "$[Big]$[Big]");
    EXPECT_EQ(out.length(), 1023u);
    std::string longName = "$[" + std::string(2000, 'n') + "]tail";
    scope.env->Expand(out, longName.c_str());
    EXPECT_STREQ(out.c_str(), "[Undefined]tail");
}
