#pragma once

namespace glimra::platform {

/// The running program, as its delegate sees it.
class Application {
public:
    virtual ~Application() = default;

    /// Requests termination, as the user's quit does, and returns. Does nothing while a request is pending.
    virtual void terminate() = 0;

    /// Answers a request to terminate that `applicationShouldTerminate` postponed. With true the program
    /// ends: it calls `applicationWillTerminate`, then runs nothing more. Main thread.
    virtual void replyToApplicationShouldTerminate(bool shouldTerminate) = 0;
};

enum class TerminateReply { Cancel = 0, Now = 1, Later = 2 };

} // namespace glimra::platform
