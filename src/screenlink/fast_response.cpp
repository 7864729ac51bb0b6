#include "screenlink/fast_response.h"

#include "platform/stored_values.h"

namespace glimra::screenlink {

void FastResponse::loadFastResponse() {
    const platform::SettingsReader settings{m_parts.defaults, m_parts.systemLog};
    m_parts.flags.fastResponse = settings.value(platform::settings::kFastResponse);
    m_parts.queue.observeArrivals([this] {
        if (m_parts.flags.fastResponse)
            m_parts.runLoop.post([this] { takeSoon(); });
    });
    m_parts.workspace.observeFront([this] { takeSoon(); });
}

void FastResponse::setFastResponse(bool isFast) {
    m_parts.flags.fastResponse = isFast;
    m_parts.defaults.set(platform::settings::kFastResponse.key, isFast);
    takeSoon();
}

void FastResponse::takeSoon() {
    // Timers, unlike jobs and events, wait while a dialog holds the application.
    m_parts.runLoop.after({}, [this] { takeWhatWaits(); });
}

void FastResponse::takeWhatWaits() {
    // While an animation plays, whoever plays it comes back here when it is done.
    while (m_parts.flags.fastResponse && !m_parts.pump.isHandingOver() && !m_parts.runLoop.isTerminated()) {
        const bool isTaken = m_parts.queue.handleMessageQueue();
        const bool isHandedOver = m_parts.pump.handOver();
        if (!isTaken && !isHandedOver) {
            m_parts.pump.watchForChange();
            return;
        }
    }
}

} // namespace glimra::screenlink
