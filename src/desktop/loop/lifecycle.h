#pragma once

#include "desktop/loop/qt_run_loop.h"
#include "platform/application.h"

#include <functional>

namespace glimra::desktop {

/// The lifecycle of the application: from launch until a request to quit is granted. Main thread.
class Lifecycle final : public platform::Application {
public:
    /// Called at the steps of the lifecycle.
    struct Delegate {
        std::function<void()> didFinishLaunching;
        std::function<platform::TerminateReply()> shouldTerminate;
        std::function<void()> willTerminate;
    };

    explicit Lifecycle(QtRunLoop& runLoop) : m_runLoop(runLoop) {}

    /// Launches the application; call once.
    void launch(Delegate delegate);
    /// Requests that the application quit, whoever asks for it: the user or the system. A request that comes
    /// before the launch is carried out after it.
    void terminate() override;
    /// Whether the application is quitting or has quit. It then carries out no more requests.
    bool isEnding() const { return m_stage == Stage::QuitPending || m_stage == Stage::Terminated; }
    /// With true, ends the program at once, even inside nested event loops: all Qt event loops return and the
    /// run loop runs nothing more.
    void replyToApplicationShouldTerminate(bool shouldTerminate) override;
    /// The process ends whatever anybody answers: the application says its last word, once, if it was
    /// launched.
    void abandon();

private:
    enum class Stage { BeforeLaunch, Running, QuitPending, Terminated };

    void end();

    QtRunLoop& m_runLoop;
    Delegate m_delegate;
    Stage m_stage = Stage::BeforeLaunch;
    bool m_askedBeforeLaunch = false;
};

} // namespace glimra::desktop
