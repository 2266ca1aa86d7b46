// The main of every test program: each test runs under a watchdog. A test that is still
// running after its limit (60 s, or CLT_TEST_LIMIT seconds) is named on the error output
// and the program ends at once with exit code 3, so that a hang fails within a minute and
// says where, instead of when the whole program reaches its time-out.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>

namespace
{
// What the watching thread reads. It lives until the process ends (never freed), so the
// thread never touches the listener, which the test framework deletes at exit.
struct WatchState
{
    std::mutex mutex;
    std::string name;
    std::chrono::steady_clock::time_point start;
    bool running = false;
    std::chrono::seconds limit{60};
};

void Watch(WatchState* s)
{
    for (;;)
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(250));
        std::lock_guard<std::mutex> lock(s->mutex);
        if (!s->running || std::chrono::steady_clock::now() - s->start < s->limit) continue;
        fprintf(stderr, "\nwatchdog: %s is still running after %d s: it fails\n", s->name.c_str(),
                int(s->limit.count()));
        fflush(stderr);
        fflush(stdout);
        std::_Exit(3);
    }
}

WatchState* g_state = nullptr;

class Watchdog : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo& info) override
    {
        std::lock_guard<std::mutex> lock(g_state->mutex);
        g_state->name = std::string(info.test_suite_name()) + "." + info.name();
        g_state->start = std::chrono::steady_clock::now();
        g_state->running = true;
    }
    void OnTestEnd(const testing::TestInfo&) override
    {
        std::lock_guard<std::mutex> lock(g_state->mutex);
        g_state->running = false;
    }
};
} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const char* limit = getenv("CLT_TEST_LIMIT");
    g_state = new WatchState;
    if (limit && atoi(limit) > 0) g_state->limit = std::chrono::seconds(atoi(limit));
    std::thread(Watch, g_state).detach();
    // The listener list owns the listener and deletes it at exit.
    testing::UnitTest::GetInstance()->listeners().Append(new Watchdog);
    return RUN_ALL_TESTS();
}
