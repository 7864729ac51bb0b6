#pragma once

#include <string_view>

namespace glimra::platform {

/// The log that the user sees, as it appears to code that writes to it. Main thread only. Texts are written
/// unchanged, with the line ends that they contain.
class MessageLog {
public:
    virtual ~MessageLog() = default;

    /// Whether debug lines are wanted.
    virtual bool debugMode() const = 0;
    /// Writes `text`, unless the log is paused.
    virtual void appendLog(std::string_view text) = 0;
    /// Like `appendLog`, but only in debug mode.
    virtual void appendDebugLog(std::string_view text) = 0;
    /// Writes `text` even while the log is paused.
    virtual void insertText(std::string_view text) = 0;
};

} // namespace glimra::platform
