#include "app/diagnostics.h"

namespace glimra::app {

void Diagnostics::toggleDebugMode() {
    m_parts.logState.debugMode = !m_parts.logState.debugMode;
    m_parts.debugMenuItem.on.set(m_parts.logState.debugMode);
    if (m_parts.logState.debugMode) {
        m_parts.reader.debugModeBegins();
        m_parts.log.appendLog("Debug mode active.\n");
        m_parts.log.appendLog("The scanRect is " + screenlink::rectText(m_parts.geometry.copy().myScanRect) +
                              "\n");
    } else {
        m_parts.log.appendLog("Debug mode off.\n");
    }
}

void Diagnostics::showTestPattern() {
    m_parts.log.appendLog("Showing test pattern on the keyboard.\n");
    m_parts.queue.appendToMessageQueue("H");
    m_parts.messages.confirmCalibrate = true;
}

} // namespace glimra::app
