#pragma once

#include "desktop/loop/qt_run_loop.h"
#include "platform/application.h"

#include <functional>

namespace glimra::desktop {

/// The life of the running application, from launch to the answered request to quit. Main thread.
class Lifecycle final : public platform::Application {
public:
    /// What the application does at the turns of its life.
    struct Delegate {
        std::function<void()> didFinishLaunching;
        std::function<platform::TerminateReply()> shouldTerminate;
        std::function<void()> willTerminate;
    };

    explicit Lifecycle(QtRunLoop& runLoop) : m_runLoop(runLoop) {}

    /// Launches the application; once.
    void launch(Delegate delegate);
    /// Asks the application to quit, from wherever the user or the system can ask it. A request that comes
    /// before the launch waits for it.
    void terminate() override;
    /// Asked to quit, or past that: whoever wants something now has to turn to the next one.
    bool isEnding() const { return m_stage == Stage::QuitPending || m_stage == Stage::Terminated; }
    /// Ends the program at once, also out of any nested event loop: the Qt event loops return and the run
    /// loop serves nothing more.
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
