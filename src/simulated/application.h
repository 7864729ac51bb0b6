#pragma once

#include "platform/application.h"
#include "simulated/run_loop.h"

#include <functional>
#include <utility>

namespace glimra::simulated {

/// The running program: it ends when a request to terminate is answered with yes.
class SimulatedApplication final : public platform::Application {
public:
    explicit SimulatedApplication(SimulatedRunLoop& runLoop) : m_runLoop(runLoop) {}

    /// Called once, when the program is about to end; the run loop ends after it.
    void setWillTerminate(std::function<void()> willTerminate) { m_willTerminate = std::move(willTerminate); }

    void replyToApplicationShouldTerminate(bool shouldTerminate) override {
        if (!shouldTerminate || m_runLoop.isTerminated())
            return;
        if (m_willTerminate)
            m_willTerminate();
        m_runLoop.terminate();
    }

private:
    SimulatedRunLoop& m_runLoop;
    std::function<void()> m_willTerminate;
};

} // namespace glimra::simulated
