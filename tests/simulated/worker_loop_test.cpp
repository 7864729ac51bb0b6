#include "simulated/worker_loop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace glimra::simulated {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

class Body final : public platform::LoopBody {
public:
    explicit Body(const SimulatedRunLoop& runLoop) : m_runLoop(runLoop) {}

    void pass() override { passes.push_back(m_runLoop.now()); }
    bool goesOn() const override { return wanted; }
    void left() override { leavings.push_back(m_runLoop.now()); }

    bool wanted = true;
    std::vector<platform::Time> passes;
    std::vector<platform::Time> leavings;

private:
    const SimulatedRunLoop& m_runLoop;
};

TEST(SimulatedWorkerLoopTest, LeavesAtAGridPointWithoutAPass) {
    SimulatedRunLoop runLoop;
    SimulatedWorkerLoop worker(runLoop);
    Body body(runLoop);
    EXPECT_TRUE(runLoop.runUntil(milliseconds(30)));
    worker.start(body, milliseconds(50));
    EXPECT_TRUE(body.passes.empty());
    EXPECT_TRUE(runLoop.runUntil(milliseconds(100)));
    body.wanted = false;
    EXPECT_TRUE(runLoop.runUntil(milliseconds(500)));
    EXPECT_THAT(body.passes, ElementsAre(milliseconds(30), milliseconds(80)));
    EXPECT_THAT(body.leavings, ElementsAre(milliseconds(130)));
}

TEST(SimulatedWorkerLoopTest, FirstPassComesEvenWhenNoLongerWanted) {
    SimulatedRunLoop runLoop;
    SimulatedWorkerLoop worker(runLoop);
    Body body(runLoop);
    worker.start(body, milliseconds(50));
    body.wanted = false;
    EXPECT_TRUE(runLoop.runUntil(milliseconds(500)));
    EXPECT_THAT(body.passes, ElementsAre(milliseconds(0)));
    EXPECT_THAT(body.leavings, ElementsAre(milliseconds(50)));
}

} // namespace
} // namespace glimra::simulated
