#include "simulated/application.h"

namespace glimra::simulated {

using platform::TerminateReply;

void SimulatedApplication::terminate() {
    if (m_isPending || m_runLoop.isTerminated())
        return;
    m_isPending = true;
    const TerminateReply reply = m_shouldTerminate ? m_shouldTerminate() : TerminateReply::Now;
    if (reply != TerminateReply::Later)
        replyToApplicationShouldTerminate(reply == TerminateReply::Now);
}

void SimulatedApplication::replyToApplicationShouldTerminate(bool shouldTerminate) {
    m_isPending = false;
    if (!shouldTerminate || m_runLoop.isTerminated())
        return;
    if (m_willTerminate)
        m_willTerminate();
    m_runLoop.terminate();
}

} // namespace glimra::simulated
