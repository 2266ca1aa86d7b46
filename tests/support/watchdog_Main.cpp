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
class Watchdog : public testing::EmptyTestEventListener
{
  public:
    explicit Watchdog(int limitSeconds) : m_limit(limitSeconds)
    {
        std::thread([this] { Watch(); }).detach();
    }

  private:
    using Clock = std::chrono::steady_clock;

    void OnTestStart(const testing::TestInfo& info) override
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_name = std::string(info.test_suite_name()) + "." + info.name();
        m_start = Clock::now();
        m_running = true;
    }
    void OnTestEnd(const testing::TestInfo&) override
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_running = false;
    }

    void Watch()
    {
        for (;;)
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(250));
            std::lock_guard<std::mutex> lock(m_mutex);
            if (!m_running || Clock::now() - m_start < m_limit) continue;
            fprintf(stderr, "\nwatchdog: %s is still running after %d s: it fails\n",
                    m_name.c_str(), int(m_limit.count()));
            fflush(stderr);
            fflush(stdout);
            std::_Exit(3);
        }
    }

    std::chrono::seconds m_limit;
    std::mutex m_mutex;
    std::string m_name;
    Clock::time_point m_start;
    bool m_running = false;
};
} // namespace

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    const char* limit = getenv("CLT_TEST_LIMIT");
    int seconds = limit ? atoi(limit) : 0;
    // The listener list owns the watchdog; its thread lives until the process ends.
    testing::UnitTest::GetInstance()->listeners().Append(new Watchdog(seconds > 0 ? seconds : 60));
    return RUN_ALL_TESTS();
}
