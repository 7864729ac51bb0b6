#include "simulated/run_loop.h"
#include "simulated/worker_loop.h"

#include <gmock/gmock.h>

namespace glimra::simulated {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

/// What happened, each with its moment in milliseconds.
class RunLoopTest : public testing::Test {
public:
    void note(const std::string& what) {
        happened.push_back(std::to_string(loop.now() / milliseconds(1)) + " " + what);
    }
    std::function<void()> noting(const std::string& what) {
        return [this, what] { note(what); };
    }
    bool wait(int duration) { return loop.runUntil(loop.now() + milliseconds(duration)); }

    SimulatedRunLoop loop;
    std::vector<std::string> happened;
};

TEST_F(RunLoopTest, ServesInOrderOfTimeAndAmongEqualsOfCreation) {
    loop.repeat(milliseconds(20), noting("slow"));
    loop.repeat(milliseconds(10), noting("quick"));
    loop.after(milliseconds(20), noting("once"));
    loop.post(noting("posted"));
    loop.repeatFrom(loop.now(), milliseconds(10), noting("reader"));
    EXPECT_TRUE(wait(20));
    // A repeating timer keeps its place among equals however often it has fired.
    EXPECT_THAT(happened, ElementsAre("0 posted", "0 reader", "10 quick", "10 reader", "20 slow", "20 quick",
                                      "20 once", "20 reader"));
    EXPECT_EQ(loop.now(), milliseconds(20));
}

TEST_F(RunLoopTest, NestedWaitServesAllButTheTimerItself) {
    loop.repeat(milliseconds(10), [this] {
        note("in");
        EXPECT_TRUE(wait(25));
        note("out");
    });
    loop.repeat(milliseconds(8), noting("other"));
    EXPECT_TRUE(wait(30));
    // The outer wait ends later than asked, and the grid of 10 goes on at 40.
    EXPECT_THAT(happened, ElementsAre("8 other", "10 in", "16 other", "24 other", "32 other", "35 out"));
    EXPECT_EQ(loop.now(), milliseconds(35));
    happened.clear();
    EXPECT_TRUE(wait(5));
    EXPECT_THAT(happened, ElementsAre("40 in", "40 other", "48 other", "56 other", "64 other", "65 out"));
}

TEST_F(RunLoopTest, CancelledTimersDoNotComeAndNothingComesAfterTheEnd) {
    platform::TimerId own = 0;
    own = loop.repeat(milliseconds(10), [this, &own] {
        note("own");
        loop.cancel(own);
        note("still here");
    });
    const platform::TimerId other = loop.after(milliseconds(15), noting("never"));
    loop.cancel(other);
    loop.cancel(other);
    loop.after(milliseconds(25), [this] {
        note("in");
        EXPECT_FALSE(wait(100));
        note("out");
    });
    loop.after(milliseconds(27), [this] {
        loop.post(noting("never"));
        loop.terminate();
    });
    EXPECT_FALSE(wait(200));
    EXPECT_THAT(happened, ElementsAre("10 own", "10 still here", "25 in", "27 out"));
    EXPECT_FALSE(wait(0));
    EXPECT_EQ(loop.now(), milliseconds(27));
}

TEST_F(RunLoopTest, AReaderLeavesAtAGridPointWithoutAPass) {
    struct Body final : platform::LoopBody {
        explicit Body(RunLoopTest& owner) : test(owner) {}
        void pass() override { test.note("pass"); }
        bool goesOn() const override { return test.loop.now() < milliseconds(100); }
        void left() override { test.note("left"); }
        RunLoopTest& test;
    } body(*this);
    SimulatedWorkerLoop worker(loop);
    worker.start(body, milliseconds(50));
    EXPECT_TRUE(wait(300));
    EXPECT_THAT(happened, ElementsAre("0 pass", "50 pass", "100 left"));
}

} // namespace
} // namespace glimra::simulated
