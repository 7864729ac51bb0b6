#include "app/diagnostics.h"

namespace glimra::app {

void Diagnostics::toggleDebugMode() {
    m.logState.debugMode = !m.logState.debugMode;
    m.debugMenuItem.on.set(m.logState.debugMode);
    if (m.logState.debugMode) {
        m.log.appendLog("Debug mode active.\n");
        m.log.appendLog("The scanRect is " + screenlink::rectText(m.geometry.copy().myScanRect) + "\n");
    } else {
        m.log.appendLog("Debug mode off.\n");
    }
}

void Diagnostics::showTestPattern() {
    m.log.appendLog("Showing test pattern on the keyboard.\n");
    m.queue.appendToMessageQueue("H");
    m.messages.confirmCalibrate = true;
}

} // namespace glimra::app
