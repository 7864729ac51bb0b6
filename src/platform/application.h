#pragma once

namespace glimra::platform {

/// The running program, as its delegate sees it.
class Application {
public:
    virtual ~Application() = default;

    /// Asks to terminate, as the user's quit does, and returns; while such a request is pending, nothing.
    virtual void terminate() = 0;

    /// Answers a request to terminate that `applicationShouldTerminate` put off. With true the program ends:
    /// it calls `applicationWillTerminate` and serves nothing more. Main thread.
    virtual void replyToApplicationShouldTerminate(bool shouldTerminate) = 0;
};

enum class TerminateReply { Cancel = 0, Now = 1, Later = 2 };

} // namespace glimra::platform
