#pragma once

#include "platform/worker_loop.h"

#include <condition_variable>
#include <mutex>
#include <thread>

namespace glimra::desktop {

/// A worker loop on its own thread. All methods must be called on the main thread.
class ThreadWorkerLoop final : public platform::WorkerLoop {
public:
    ThreadWorkerLoop() = default;
    ~ThreadWorkerLoop() override;

    ThreadWorkerLoop(const ThreadWorkerLoop&) = delete;
    ThreadWorkerLoop& operator=(const ThreadWorkerLoop&) = delete;

    void start(platform::LoopBody& body) override;

    /// Ends the current pause or, between pauses, the next one early, so that the body's `goesOn` is asked at
    /// once.
    void wake();
    /// Waits until the body has left; only its own `goesOn` makes it leave. Returns at once when no thread
    /// was started.
    void join();

private:
    void run(platform::LoopBody& body);
    void waitFor(platform::Duration pause);

    std::mutex m_mutex;
    std::condition_variable m_woken;
    bool m_wakeAsked = false;
    std::thread m_thread;
};

} // namespace glimra::desktop
