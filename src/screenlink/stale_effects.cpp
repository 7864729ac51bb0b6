#include "screenlink/stale_effects.h"

namespace glimra::screenlink {

void StaleEffects::check() {
    const std::uint64_t frames = m.reader.validFrames();
    if (!m_lastSign || frames != m_validFrames || m.pump.gameIsInFront()) {
        m_lastSign = m.runLoop.now();
        m_validFrames = frames;
        m_ended = false;
        return;
    }
    if (m.options.endStaleEffects && !m_ended && m.effects.isAnyPlaying() &&
        m.runLoop.now() - *m_lastSign >= kPatience)
        endEffects();
}

void StaleEffects::endEffects() {
    // The flag of the whisper signal outlives a reset.
    m_ended = true;
    m.dispatcher.resetLights(events::ResetNotice::Silent);
    if (m.options.autoToggleProfile2)
        m.lighting.showProfileLighting(kAwayProfile);
}

} // namespace glimra::screenlink
