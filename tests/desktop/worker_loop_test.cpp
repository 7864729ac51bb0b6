#include "desktop/thread_worker_loop.h"

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;

class CountingBody final : public platform::LoopBody {
public:
    void pass() override {
        const std::scoped_lock lock(m_mutex);
        ++m_passes;
        m_passed.notify_all();
    }
    bool goesOn() const override { return m_goesOn; }
    void left() override { m_left = true; }

    void stop() { m_goesOn = false; }
    void awaitPasses(int count) {
        std::unique_lock lock(m_mutex);
        m_passed.wait(lock, [&] { return m_passes >= count; });
    }
    int passes() {
        const std::scoped_lock lock(m_mutex);
        return m_passes;
    }
    bool hasLeft() const { return m_left; }

private:
    std::mutex m_mutex;
    std::condition_variable m_passed;
    int m_passes = 0;
    std::atomic<bool> m_goesOn = true;
    std::atomic<bool> m_left = false;
};

TEST(ThreadWorkerLoop, PassesAgainAndAgainUntilTheBodyEndsIt) {
    CountingBody body;
    ThreadWorkerLoop loop;
    loop.start(body, 1us);
    body.awaitPasses(100);
    body.stop();
    loop.join();
    EXPECT_TRUE(body.hasLeft());
    loop.join();
}

TEST(ThreadWorkerLoop, WakingEndsAPauseSoThatQuittingIsPrompt) {
    CountingBody body;
    {
        ThreadWorkerLoop loop;
        loop.start(body, 10min);
        body.awaitPasses(1);
        loop.wake();
        body.awaitPasses(2);
        body.stop();
        // Destroying it wakes it once more, and waits.
    }
    EXPECT_TRUE(body.hasLeft());
    EXPECT_EQ(body.passes(), 2) << "one that does not go on has no further pass";
    const ThreadWorkerLoop neverStarted;
}

} // namespace
} // namespace glimra::desktop
