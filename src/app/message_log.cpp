#include "app/message_log.h"

namespace glimra::app {

MessageLog::MessageLog(const LogState& state, platform::TextView& view) : m_state(state), m_view(view) {
}

void MessageLog::appendLog(std::string_view text) {
    if (!m_state.updatePause)
        insertText(text);
}

void MessageLog::appendDebugLog(std::string_view text) {
    if (m_state.debugMode)
        appendLog(text);
}

void MessageLog::tell(std::string_view line) {
    appendLog(std::string(line) + "\n");
}

void MessageLog::insertText(std::string_view text) {
    if (!m_state.hasEnded)
        m_view.insertAtSelection(text);
}

} // namespace glimra::app
