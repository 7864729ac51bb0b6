#include "simulated/worker_loop.h"

namespace glimra::simulated {

void SimulatedWorkerLoop::start(platform::LoopBody& body, platform::Duration pause) {
    m_timer = m_runLoop.repeatFrom(m_runLoop.now(), pause, [this, &body] { cycle(body); });
}

void SimulatedWorkerLoop::cycle(platform::LoopBody& body) {
    if (m_passed && !body.goesOn()) {
        m_runLoop.cancel(m_timer);
        body.left();
        return;
    }
    m_passed = true;
    body.pass();
}

} // namespace glimra::simulated
