#include "desktop/lifecycle.h"
#include "desktop/quit_signals.h"

#include <QCoreApplication>
#include <QTimer>

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <string>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;
using platform::TerminateReply;

class LifecycleTest : public testing::Test {
protected:
    void launch() {
        m_lifecycle.launch({
            .didFinishLaunching = [this] { m_events += "launched "; },
            .shouldTerminate =
                [this] {
                    m_events += "asked ";
                    if (m_whenAsked)
                        m_runLoop.post(m_whenAsked);
                    return m_reply;
                },
            .willTerminate = [this] { m_events += "ending "; },
        });
    }
    /// Runs the event loop; a test that hangs ends with status 1.
    int exec() {
        QTimer::singleShot(20s, [] { QCoreApplication::exit(1); });
        return QCoreApplication::exec();
    }

    QtRunLoop m_runLoop;
    Lifecycle m_lifecycle{m_runLoop};
    TerminateReply m_reply = TerminateReply::Later;
    std::function<void()> m_whenAsked;
    std::string m_events;
};

TEST_F(LifecycleTest, OneRequestAtATimeAndOneAnswer) {
    launch();
    m_lifecycle.replyToApplicationShouldTerminate(true);
    m_lifecycle.terminate();
    m_lifecycle.terminate();
    EXPECT_EQ(m_events, "launched asked ");

    m_lifecycle.replyToApplicationShouldTerminate(false);
    m_lifecycle.terminate();
    m_lifecycle.replyToApplicationShouldTerminate(true);
    m_lifecycle.replyToApplicationShouldTerminate(true);
    m_lifecycle.terminate();
    EXPECT_EQ(m_events, "launched asked asked ending ");
    EXPECT_TRUE(m_runLoop.isTerminated());
}

TEST_F(LifecycleTest, ASignalEndsTheProgramFromInsideAWait) {
    const QuitSignals signals([this] { m_lifecycle.terminate(); });
    m_runLoop.post([this] {
        launch();
        m_whenAsked = [this] { m_lifecycle.replyToApplicationShouldTerminate(true); };
        m_runLoop.after(0ms, [] { std::raise(SIGTERM); });
        m_events += m_runLoop.runUntil(m_runLoop.now() + 1h) ? "on" : "unwound";
    });
    EXPECT_EQ(exec(), 0);
    EXPECT_EQ(m_events, "launched asked ending unwound");
}

} // namespace
} // namespace glimra::desktop
