#pragma once

#include "platform/worker_loop.h"
#include "simulated/run_loop.h"

namespace glimra::simulated {

/// The reader's thread, simulated by a timer of the run loop. The first pass is due when the loop is started.
/// Every `pause` after that, it asks `goesOn` and, when true, does another pass. A pass takes no time. As
/// long as the pause is the same, the timer keeps its place among those due at one moment.
class SimulatedWorkerLoop final : public platform::WorkerLoop {
public:
    explicit SimulatedWorkerLoop(SimulatedRunLoop& runLoop) : m_runLoop(runLoop) {}

    void start(platform::LoopBody& body) override;

private:
    void repeat(platform::LoopBody& body, platform::Time first);
    void cycle(platform::LoopBody& body);

    SimulatedRunLoop& m_runLoop;
    platform::TimerId m_timer = 0;
    platform::Duration m_pause{};
    bool m_passed = false;
};

} // namespace glimra::simulated
