#include "desktop/loop/thread_worker_loop.h"

namespace glimra::desktop {

ThreadWorkerLoop::~ThreadWorkerLoop() {
    wake();
    join();
}

void ThreadWorkerLoop::start(platform::LoopBody& body) {
    m_thread = std::thread([this, &body] { run(body); });
}

void ThreadWorkerLoop::wake() {
    {
        const std::scoped_lock lock(m_mutex);
        m_wakeAsked = true;
    }
    m_woken.notify_one();
}

void ThreadWorkerLoop::join() {
    if (m_thread.joinable())
        m_thread.join();
}

void ThreadWorkerLoop::run(platform::LoopBody& body) {
    do {
        body.pass();
        waitFor(body.pause());
    } while (body.goesOn());
    body.left();
}

void ThreadWorkerLoop::waitFor(platform::Duration pause) {
    std::unique_lock lock(m_mutex);
    m_woken.wait_for(lock, pause, [this] { return m_wakeAsked; });
    m_wakeAsked = false;
}

} // namespace glimra::desktop
