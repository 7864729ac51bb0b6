#pragma once

#include "platform/application.h"
#include "simulated/run_loop.h"

#include <functional>
#include <utility>

namespace glimra::simulated {

/// The running program: it ends when a request to terminate is granted.
class SimulatedApplication final : public platform::Application {
public:
    explicit SimulatedApplication(SimulatedRunLoop& runLoop) : m_runLoop(runLoop) {}

    /// `shouldTerminate` is asked before the program ends; `willTerminate` is called when it ends.
    void setDelegate(std::function<platform::TerminateReply()> shouldTerminate,
                     std::function<void()> willTerminate) {
        m_shouldTerminate = std::move(shouldTerminate);
        m_willTerminate = std::move(willTerminate);
    }

    void terminate() override;
    /// Ends the run loop after `willTerminate` has returned.
    void replyToApplicationShouldTerminate(bool shouldTerminate) override;

private:
    SimulatedRunLoop& m_runLoop;
    std::function<platform::TerminateReply()> m_shouldTerminate;
    std::function<void()> m_willTerminate;
    /// A request is waiting for its reply.
    bool m_isPending = false;
};

} // namespace glimra::simulated
