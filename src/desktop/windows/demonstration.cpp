#include "desktop/windows/demonstration.h"

#include <algorithm>
#include <array>
#include <utility>

namespace glimra::desktop {

namespace {

/// What a player does with the light, or with the place of the strip, by the beginning of its selector.
constexpr std::array<std::string_view, 7> kLightActions{
    "showProfile:",        "test", "reset", "calibrate", "setColors", "openWindowToMapKeys:",
    "ImportPreferencesMI:"};

} // namespace

Demonstration::Demonstration(const Parts& parts) : m_parts(parts) {
    m_parts.capture.over.observe([this](screenlink::DemonstrationCapture::End how) { over(how); });
    m_parts.binder.aboutToSend.observe(
        [this](const app::ActionRow& action, const app::ActionArgument&) { yieldTo(action.selector); });
}

void Demonstration::play() {
    if (m_parts.capture.isPlaying())
        return;
    if (gameIsHere()) {
        m_parts.delegate.operations().log.tell(
            "The demonstration is not played while the game lights the keyboard or Glimra calibrates.");
        return;
    }
    m_profileBefore = m_parts.delegate.state().profile.activeColorProfile;
    m_afterwards = Afterwards::ProfileFromBefore;
    m_parts.capture.play();
    state.set(State::Playing);
}

void Demonstration::stop() {
    m_parts.capture.stop();
}

bool Demonstration::gameIsHere() const {
    const app::Operations& operations = m_parts.delegate.operations();
    return m_parts.delegate.state().effects.isAnyPlaying() || operations.calibration.isRunning() ||
           operations.messagePump.gameIsInFront();
}

void Demonstration::yieldTo(std::string_view selector) {
    if (!m_parts.capture.isPlaying() || std::ranges::none_of(kLightActions, [&](std::string_view action) {
            return selector.starts_with(action);
        }))
        return;
    m_afterwards = Afterwards::ProfileAsItIs;
    stop();
}

void Demonstration::over(screenlink::DemonstrationCapture::End how) {
    using End = screenlink::DemonstrationCapture::End;
    if (how == End::RealStrip)
        m_parts.delegate.operations().log.tell("The demonstration has ended: the game's strip shows.");
    // Later, when the action to which it yields is done.
    m_parts.runLoop.post([this] { cleanUp(m_afterwards); });
    state.set(how == End::Played ? State::Played : State::Stopped);
}

void Demonstration::cleanUp(Afterwards afterwards) {
    const app::State& now = m_parts.delegate.state();
    const int active = now.profile.activeColorProfile;
    const int wanted = afterwards == Afterwards::ProfileFromBefore ? m_profileBefore : active;
    const bool wasDead = now.effects.deadAnimationPlaying;
    if (now.effects.combatAnimationPlaying)
        m_parts.sendToken("O");
    if (wasDead)
        m_parts.sendToken("U");
    if (now.effects.whisperLightActive)
        m_parts.sendToken("i");
    if (!now.lighting.dimmedKeys.empty())
        for (const std::string_view ready : {"`\x01", "[\x01"})
            m_parts.sendToken(ready);
    if (wanted != active || wasDead)
        m_parts.sendToken(std::to_string(wanted));
}

} // namespace glimra::desktop
