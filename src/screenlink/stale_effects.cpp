#include "screenlink/stale_effects.h"

#include "platform/stored_values.h"

#include <utility>

namespace glimra::screenlink {

namespace {

constexpr std::string_view kEndStaleEffectsKey = "endStaleEffects";

} // namespace

void StaleEffects::loadEndStaleEffects() {
    const platform::SettingsReader settings{m.defaults, m.systemLog};
    m.options.endStaleEffects =
        settings
            .checked(platform::storedBool(settings.defaults, kEndStaleEffectsKey), kEndStaleEffectsKey,
                     "is neither yes nor no; no stands in for it.")
            .value_or(false);
}

void StaleEffects::setEndStaleEffects(bool endThem) {
    m.options.endStaleEffects = endThem;
    m.defaults.set(kEndStaleEffectsKey, endThem);
}

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
