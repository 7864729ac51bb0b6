#pragma once

#include "platform/worker_loop.h"
#include "simulated/run_loop.h"

namespace glimra::simulated {

/// The reader's thread, as a guest of the run loop: the first pass is due at the moment it is started, and
/// then at every `pause` a look whether it goes on and, if so, a pass. A pass takes no time.
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
