#include "screenlink/stale_effects.h"

#include <utility>

namespace glimra::screenlink {

void StaleEffects::check() {
    const std::uint64_t frames = m.reader.validFrames();
    if (!m_lastSign || frames != m_validFrames || m.pump.gameIsInFront()) {
        m_lastSign = m.runLoop.now();
        m_validFrames = frames;
        m_isSaid = false;
        return;
    }
    if (m.options.endStaleEffects && m.effects.isAnyPlaying() && m.runLoop.now() - *m_lastSign >= kPatience)
        endEffects();
}

void StaleEffects::endEffects() {
    if (!std::exchange(m_isSaid, true))
        m.log.appendLog("The game is gone; the effects that it left behind have ended.\n");
    m.animations.stopAllKeyEffects(m.options.useSingleColorMode);
    for (const lighting::IndividuallyLitKey& key : lighting::individuallyLitKeys)
        m.driver.LogiLedStopEffectsOnKey(key.keyName);
    m.effects.combatAnimationPlaying = false;
    m.effects.deadAnimationPlaying = false;
    m.effects.shadowAnimationPlaying = false;
    m.effects.whisperLightActive = false;
    m.effects.leftPulsing = false;
    showWhatLiesUnder();
}

void StaleEffects::showWhatLiesUnder() {
    if (m.options.autoToggleProfile2)
        m.lighting.showProfileLighting(kAwayProfile);
    else if (m.options.useSingleColorMode)
        m.lighting.setAllKeysColor(m.lightingState.keyboardColorSet[lighting::kColorASlot]);
    else
        m.lighting.showProfileLighting(m.profile.activeColorProfile);
    // Where the canvas is open, the keyboard shows what it holds.
    m.canvasView.displayNeeded.emit();
}

} // namespace glimra::screenlink
