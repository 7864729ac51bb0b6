#include "desktop/loop/lifecycle.h"

#include <QCoreApplication>

#include <utility>

namespace glimra::desktop {

void Lifecycle::launch(Delegate delegate) {
    m_delegate = std::move(delegate);
    m_delegate.didFinishLaunching();
    m_stage = Stage::Running;
    if (m_askedBeforeLaunch)
        terminate();
}

void Lifecycle::terminate() {
    if (m_stage == Stage::BeforeLaunch)
        m_askedBeforeLaunch = true;
    if (m_stage != Stage::Running)
        return;
    // The stage changes before the question, because the reply may come before the question returns.
    m_stage = Stage::QuitPending;
    switch (m_delegate.shouldTerminate()) {
    case platform::TerminateReply::Cancel:
        replyToApplicationShouldTerminate(false);
        break;
    case platform::TerminateReply::Now:
        replyToApplicationShouldTerminate(true);
        break;
    case platform::TerminateReply::Later:
        break;
    }
}

void Lifecycle::replyToApplicationShouldTerminate(bool shouldTerminate) {
    if (m_stage != Stage::QuitPending)
        return;
    if (shouldTerminate)
        end();
    else
        m_stage = Stage::Running;
}

void Lifecycle::abandon() {
    if (m_stage == Stage::Running || m_stage == Stage::QuitPending)
        end();
}

void Lifecycle::end() {
    m_stage = Stage::Terminated;
    m_delegate.willTerminate();
    m_runLoop.terminate();
    QCoreApplication::exit(0);
}

} // namespace glimra::desktop
