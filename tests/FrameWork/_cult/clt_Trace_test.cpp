// clt_Trace: the no-sink path, sink replacement and the 1023-character cut.
#include "test_Support.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(CltTrace, TheLastSinkConstructedReceivesEverything)
{
    TestScope scope;
    CapturingSink second;
    clt_Trace("LfxMain: ");
    clt_Trace("%s started.\n", "Init");
    EXPECT_TRUE(scope.sink->texts.empty());
    EXPECT_EQ(second.texts, (std::vector<std::string>{"LfxMain: ", "Init started.\n"}));
}

TEST(CltTrace, LongTextsAreCutAt1023Characters)
{
    TestScope scope;
    std::string big(2000, 'z');
    clt_Trace("%s", big.c_str());
    ASSERT_EQ(scope.sink->texts.size(), 1u);
    EXPECT_EQ(scope.sink->texts[0], std::string(1023, 'z'));
}
