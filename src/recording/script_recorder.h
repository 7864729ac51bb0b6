#pragma once

#include "app/actions.h"
#include "platform/platform.h"
#include "screenlink/strip_decoder.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::recording {

/// Writes down what comes into the application as a script that `glimra-replay` runs: frames of the strip,
/// who is in front, sleep, and what the user does. Nothing of the screen is in it but valid frames, and no
/// words of the user's. Main thread.
///
/// A script gives a modal session's answer before the action that opens it, and lets the session take no
/// time. So an action is held back while it may still come to that, and what happens during a session is
/// written after it.
class ScriptRecorder {
public:
    /// Takes whole lines; false when it could not.
    using Write = std::function<bool(std::string_view lines)>;
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

    /// `ended` is told, once, why nothing more is written before `quit` has been: a sentence for the log.
    ScriptRecorder(std::function<platform::Time()> now, Write write, std::function<void(std::string)> ended,
                   std::size_t mostBytes = kMostBytes);

    /// The settings, a screen with `scale` pixels in a point, and the launch. First of all.
    void launch(const platform::UserDefaults& settings, double scale);
    /// The launch is over, which takes no time in a script.
    void launched() { m_written = m_now(); }
    /// The strip as it was seen at `time`; none when no valid frame was.
    void frame(const std::optional<screenlink::Cells>& cells, platform::Time time);
    void front(const std::optional<platform::RunningApplication>& application);
    void sleep() { add("sleep", m_now()); }
    void wake() { add("wake", m_now()); }
    /// A token that came in by another way than the strip.
    void token(std::string_view token);
    /// The last line.
    void quit();

    void beginAction(const app::ActionRow& action, const app::ActionArgument& argument);
    void endAction();
    void beginModal();
    /// `settings` are those of the session's controls, as the command `answer` takes them.
    void endModal(int code, const std::string& settings);

private:
    struct Line {
        std::string text;
        platform::Time time;
    };

    void add(std::string text, platform::Time time);
    void hold(Line line);
    void releasePending();
    void write(const Line& line);
    void end(const std::string& why);

    std::function<platform::Time()> m_now;
    Write m_write;
    std::function<void(std::string)> m_ended;
    std::size_t m_bytesLeft;

    /// The last moment that was written, or nothing before the launch.
    std::optional<platform::Time> m_written;
    /// The user's action that is being carried out, until it is written.
    std::optional<Line> m_pending;
    int m_openActions = 0;
    int m_openModals = 0;
    /// What happens during a modal session.
    std::vector<Line> m_held;
    std::size_t m_heldBytes = 0;
};

} // namespace glimra::recording
