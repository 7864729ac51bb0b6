#include "screenlink/message_pump.h"

#include "screenlink/strip_code.h"

namespace glimra::screenlink {

namespace {

constexpr int kTicksBetweenRefreshes = 13;
constexpr platform::Duration kRedFlash = std::chrono::seconds(1);
constexpr platform::Color kDeathColor{0.5, 0.4, 0.5};
constexpr platform::Color kRed{1.0, 0.0, 0.0};

} // namespace

MessagePump::MessagePump(const Parts& parts) : m(parts) {
}

void MessagePump::readMsgQueue() {
    if (!m.messages.currentMessage.empty())
        handOver();
    // The message may have played an animation in which the user quit.
    if (!m.runLoop.isTerminated())
        watchFront();
}

void MessagePump::handOver() {
    const std::string message = m.messages.currentMessage;
    if (m.effects.whisperLightActive) {
        if (message.front() == 'I') {
            m.messages.currentMessage.clear();
            return;
        }
        if (message.find_first_of(kPrefixCharacters) == std::string::npos) {
            // Ends the whisper signal; the message itself goes out on the next tick.
            m.driver.LogiLedStopEffectsOnKey(lighting::kEnterKey);
            m.effects.whisperLightActive = false;
            return;
        }
    }
    ++m_dispatchedMessages;
    m.dispatcher.evaluateMessage(message);
    m.messages.currentMessage.clear();
}

void MessagePump::watchFront() {
    const std::optional<platform::RunningApplication> front = m.workspace.frontmostApplication();
    m_gameIsInFront = front && front->bundleIdentifier == platform::kGameIdentifier;
    if (!front)
        return;
    int& countdown = m.messages.WoWisInTheForeground;
    if (!m_gameIsInFront) {
        if (countdown > 0 && m.options.autoToggleProfile2)
            m.lighting.showProfileLighting(kAwayProfile);
        countdown = 0;
    } else if (countdown != 0) {
        if (!m.effects.deadAnimationPlaying)
            --countdown;
    } else {
        refresh();
        countdown = kTicksBetweenRefreshes;
        m.messages.confirmCalibrate = true;
    }
}

void MessagePump::refresh() {
    const auto setAllToColorA = [this] {
        m.lighting.setAllKeysColor(m.lightingState.keyboardColorSet[lighting::kColorASlot]);
    };
    const bool combat = m.effects.combatAnimationPlaying;
    const bool dead = m.effects.deadAnimationPlaying;
    const bool shadow = m.effects.shadowAnimationPlaying;

    if (dead) {
        m.lighting.setAllKeysColor(kDeathColor);
    } else if (!m.options.useSingleColorMode) {
        if (!shadow)
            m.lighting.showProfileLighting(m.profile.activeColorProfile);
    } else if (combat) {
        m.lighting.setAllKeysColor(kRed);
        m.runLoop.after(kRedFlash, setAllToColorA);
    } else {
        setAllToColorA();
    }
    if (m.options.useSingleColorMode && !combat && !dead && !shadow)
        setAllToColorA();
}

} // namespace glimra::screenlink
