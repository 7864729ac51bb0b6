#pragma once

#include "platform/worker_loop.h"
#include "simulated/run_loop.h"

namespace glimra::simulated {

/// The reader's thread, simulated by a timer of the run loop. The first pass is due when the loop is started.
/// Every `pause` after that, it asks `goesOn` and, when true, does another pass. A pass takes no time.
class SimulatedWorkerLoop final : public platform::WorkerLoop {
public:
    explicit SimulatedWorkerLoop(SimulatedRunLoop& runLoop) : m_runLoop(runLoop) {}

    void start(platform::LoopBody& body, platform::Duration pause) override;

private:
    void cycle(platform::LoopBody& body);

    SimulatedRunLoop& m_runLoop;
    platform::TimerId m_timer = 0;
    bool m_passed = false;
};

} // namespace glimra::simulated
