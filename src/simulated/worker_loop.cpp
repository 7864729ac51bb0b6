#include "simulated/worker_loop.h"

namespace glimra::simulated {

void SimulatedWorkerLoop::start(platform::LoopBody& body) {
    repeat(body, m_runLoop.now());
}

void SimulatedWorkerLoop::repeat(platform::LoopBody& body, platform::Time first) {
    m_pause = body.pause();
    m_timer = m_runLoop.repeatFrom(first, m_pause, [this, &body] { cycle(body); });
}

void SimulatedWorkerLoop::cycle(platform::LoopBody& body) {
    if (m_passed && !body.goesOn()) {
        m_runLoop.cancel(m_timer);
        body.left();
        return;
    }
    m_passed = true;
    body.pass();
    if (body.pause() != m_pause) {
        m_runLoop.cancel(m_timer);
        repeat(body, m_runLoop.now() + body.pause());
    }
}

} // namespace glimra::simulated
