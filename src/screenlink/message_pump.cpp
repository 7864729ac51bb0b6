#include "screenlink/message_pump.h"

#include "screenlink/strip_code.h"

namespace glimra::screenlink {

namespace {

constexpr int kTicksBetweenRefreshes = 13;
constexpr platform::Duration kRedFlash = std::chrono::seconds(1);
constexpr platform::Color kDeathColor{0.5, 0.4, 0.5};
constexpr platform::Color kRed{1.0, 0.0, 0.0};

bool isGame(const std::optional<platform::RunningApplication>& application) {
    return application && application->bundleIdentifier == platform::kGameIdentifier;
}

} // namespace

MessagePump::MessagePump(const Parts& parts) : m_parts(parts) {
}

void MessagePump::readMsgQueue() {
    handOver();
    // The message may have played an animation in which the user quit.
    if (!m_parts.runLoop.isTerminated())
        watchFront();
}

bool MessagePump::handOver() {
    const std::string message = m_parts.messages.currentMessage;
    if (message.empty())
        return false;
    if (m_parts.effects.whisperLightActive) {
        if (message.front() == 'I') {
            m_parts.messages.currentMessage.clear();
            return true;
        }
        if (message.find_first_of(kPrefixCharacters) == std::string::npos) {
            // Ends the whisper signal; the message itself goes out on the next tick.
            m_parts.driver.LogiLedStopEffectsOnKey(lighting::kEnterKey);
            m_parts.effects.whisperLightActive = false;
            return true;
        }
    }
    dispatch(message);
    return true;
}

void MessagePump::dispatch(const std::string& message) {
    ++m_dispatchedMessages;
    m_isHandingOver = true;
    m_parts.dispatcher.evaluateMessage(message);
    m_isHandingOver = false;
    m_parts.messages.currentMessage.clear();
}

bool MessagePump::isIdle() const {
    return m_parts.messages.currentMessage.empty() && !m_gameIsInFront;
}

void MessagePump::watchForChange() {
    if (isGame(m_parts.workspace.frontmostApplication()) != m_gameIsInFront)
        watchFront();
}

void MessagePump::watchFront() {
    const std::optional<platform::RunningApplication> front = m_parts.workspace.frontmostApplication();
    m_gameIsInFront = isGame(front);
    if (!front)
        return;
    int& countdown = m_parts.messages.WoWisInTheForeground;
    if (!m_gameIsInFront) {
        if (countdown > 0 && m_parts.options.autoToggleProfile2)
            m_parts.lighting.showProfileLighting(kAwayProfile);
        countdown = 0;
    } else if (countdown != 0) {
        if (!m_parts.effects.deadAnimationPlaying)
            --countdown;
    } else {
        refresh();
        countdown = kTicksBetweenRefreshes;
        m_parts.messages.confirmCalibrate = true;
    }
}

void MessagePump::refresh() {
    const auto setAllToColorA = [this] {
        m_parts.lighting.setAllKeysColor(m_parts.lightingState.keyboardColorSet[lighting::kColorASlot]);
    };
    const bool combat = m_parts.effects.combatAnimationPlaying;
    const bool dead = m_parts.effects.deadAnimationPlaying;
    const bool shadow = m_parts.effects.shadowAnimationPlaying;

    if (dead) {
        m_parts.lighting.setAllKeysColor(kDeathColor);
    } else if (!m_parts.options.useSingleColorMode) {
        if (!shadow)
            m_parts.lighting.showProfileLighting(m_parts.profile.activeColorProfile);
    } else if (combat) {
        m_parts.lighting.setAllKeysColor(kRed);
        m_parts.runLoop.after(kRedFlash, setAllToColorA);
    } else {
        setAllToColorA();
    }
    if (m_parts.options.useSingleColorMode && !combat && !dead && !shadow)
        setAllToColorA();
}

} // namespace glimra::screenlink
