#pragma once

#include "platform/controls.h"
#include "platform/message_log.h"

namespace glimra::app {

struct LogState {
    /// Debug lines are written too. Not kept between runs.
    bool debugMode = false;
    /// Nothing is written while set.
    bool updatePause = false;
    /// The application has ended: nothing is written any more.
    bool hasEnded = false;
};

/// The log of the run: a text that is written at its selection, so that lines gather at the end unless the
/// user has put the selection elsewhere.
class MessageLog final : public platform::MessageLog {
public:
    MessageLog(const LogState& state, platform::TextView& view);

    bool debugMode() const override { return m_state.debugMode; }
    void appendLog(std::string_view text) override;
    void appendDebugLog(std::string_view text) override;
    /// Writes a line, without its end: what the machine has to say.
    void tell(std::string_view line);
    void insertText(std::string_view text) override;

private:
    const LogState& m_state;
    platform::TextView& m_view;
};

} // namespace glimra::app
