#include "screenlink/stale_effects.h"

#include "platform/stored_values.h"

#include <utility>

namespace glimra::screenlink {

void StaleEffects::loadEndStaleEffects() {
    const platform::SettingsReader settings{m_parts.defaults, m_parts.systemLog};
    m_parts.options.endStaleEffects = settings.value(platform::settings::kEndStaleEffects);
}

void StaleEffects::setEndStaleEffects(bool endThem) {
    m_parts.options.endStaleEffects = endThem;
    m_parts.defaults.set(platform::settings::kEndStaleEffects.key, endThem);
}

void StaleEffects::check() {
    const std::uint64_t frames = m_parts.reader.validFrames();
    if (!m_lastSign || frames != m_validFrames || m_parts.pump.gameIsInFront()) {
        m_lastSign = m_parts.runLoop.now();
        m_validFrames = frames;
        m_isSaid = false;
        return;
    }
    if (m_parts.options.endStaleEffects && m_parts.effects.isAnyPlaying() &&
        m_parts.runLoop.now() - *m_lastSign >= kPatience)
        endEffects();
}

void StaleEffects::endEffects() {
    if (!std::exchange(m_isSaid, true))
        m_parts.log.appendLog("The game is gone; the effects that it left behind have ended.\n");
    m_parts.animations.stopAllKeyEffects(m_parts.options.useSingleColorMode);
    for (const lighting::IndividuallyLitKey& key : lighting::individuallyLitKeys)
        m_parts.driver.LogiLedStopEffectsOnKey(key.keyName);
    m_parts.effects.combatAnimationPlaying = false;
    m_parts.effects.deadAnimationPlaying = false;
    m_parts.effects.shadowAnimationPlaying = false;
    m_parts.effects.whisperLightActive = false;
    m_parts.effects.leftPulsing = false;
    showWhatLiesUnder();
}

void StaleEffects::showWhatLiesUnder() {
    if (m_parts.options.autoToggleProfile2)
        m_parts.lighting.showProfileLighting(kAwayProfile);
    else if (m_parts.options.useSingleColorMode)
        m_parts.lighting.setAllKeysColor(m_parts.lightingState.keyboardColorSet[lighting::kColorASlot]);
    else
        m_parts.lighting.showProfileLighting(m_parts.profile.activeColorProfile);
    // While the canvas is open, the keyboard shows the canvas's colours.
    m_parts.canvasView.displayNeeded.emit();
}

} // namespace glimra::screenlink
