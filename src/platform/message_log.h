#pragma once

#include <string_view>

namespace glimra::platform {

/// The user-visible log of the run, seen from those who write to it. Main thread only. A text is written as
/// it is, line ends included.
class MessageLog {
public:
    virtual ~MessageLog() = default;

    /// Debug lines are wanted.
    virtual bool debugMode() const = 0;
    /// Writes `text`, unless the log is paused.
    virtual void appendLog(std::string_view text) = 0;
    /// The same, in debug mode only.
    virtual void appendDebugLog(std::string_view text) = 0;
    /// Writes `text` even while the log is paused.
    virtual void insertText(std::string_view text) = 0;
};

} // namespace glimra::platform
