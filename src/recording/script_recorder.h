#pragma once

#include "app/actions.h"
#include "platform/platform.h"
#include "screenlink/strip_decoder.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::recording {

/// Records the application's input as a script that `glimra-replay` runs: frames of the strip, the
/// application in front, sleep, and the user's actions. It records nothing of the screen except valid frames,
/// and none of the user's text. Main thread.
///
/// In a script, a modal session's answer comes before the action that opens the session, and the session
/// takes no time. So an action's line is held back while the action may still open a session, and what
/// happens during a session is written after it.
class ScriptRecorder {
public:
    /// Writes whole lines. Returns why nothing more can be written, "is full" for one; empty while it goes
    /// on.
    using Write = std::function<std::string(std::string_view lines)>;
    /// What is held back during a modal session, at most.
    static constexpr std::size_t kMostHeldBytes = std::size_t{64} << 20;

    /// `ended` is called, at most once, when recording ends before `quit`, with the reason as a sentence for
    /// the log.
    ScriptRecorder(std::function<platform::Time()> now, Write write, std::function<void(std::string)> ended,
                   std::size_t mostHeldBytes = kMostHeldBytes);

    /// Writes the settings, a screen with `scale` pixels per point, and the launch. Must be called first.
    void launch(const platform::UserDefaults& settings, double scale);
    /// Must be called when the launch is over. In a script it takes no time.
    void launched() { m_written = m_now(); }
    /// The strip as it was seen at `time`; none when it showed no valid frame.
    void frame(const std::optional<screenlink::Cells>& cells, platform::Time time);
    void front(const std::optional<platform::RunningApplication>& application);
    void sleep() { add("sleep", m_now()); }
    void wake() { add("wake", m_now()); }
    /// A token that did not come from the strip.
    void token(std::string_view token);
    /// Writes the last line.
    void quit();

    void beginAction(const app::ActionRow& action, const app::ActionArgument& argument);
    void endAction();
    void beginModal();
    /// `settings` are the states of the session's controls, as the command `answer` takes them.
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
    std::size_t m_mostHeldBytes;

    /// The time of the last written line; none before the launch.
    std::optional<platform::Time> m_written;
    /// The line of the user's current action, until it is written.
    std::optional<Line> m_pending;
    int m_openActions = 0;
    int m_openModals = 0;
    /// Lines for what happens during a modal session.
    std::vector<Line> m_held;
    std::size_t m_heldBytes = 0;
};

} // namespace glimra::recording
