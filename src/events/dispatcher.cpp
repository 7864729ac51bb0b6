#include "events/dispatcher.h"

#include "platform/hexadecimal.h"

#include <algorithm>
#include <string>

namespace glimra::events {

using lighting::KeyName;
using lighting::Percentages;

namespace {

/// The modifiers and arrows around the player's hands, logo and badge, Caps Lock and Enter, by driver name.
constexpr std::array<KeyName, 18> combatKeys{0x2A, 0x1D,  0x15B, 0x38,  0x39,  0x138,   0x15C,   0x15D, 0x11D,
                                             0x36, 0x148, 0x14B, 0x150, 0x14D, 0xFFFF1, 0xFFFF2, 0x3A,  0x1C};

constexpr int kWhisperIntervalMs = 500;
constexpr int kChatPulseMs = 200;
constexpr int kChatProfile = 2;
constexpr int kResetProfile = 1;

std::string hexBytes(std::string_view text) {
    return platform::hexadecimal({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

void pulseKeys(platform::LedDriver& driver, const Percentages& start, const Percentages& finish,
               int periodMs) {
    driver.LogiLedSetTargetDevice(lighting::kPerKeyDevices);
    for (const KeyName key : combatKeys)
        driver.LogiLedPulseSingleKey(key, start.red, start.green, start.blue, finish.red, finish.green,
                                     finish.blue, periodMs, true);
}

} // namespace

/// A message in its two parts.
struct Dispatcher::Message {
    char code;
    std::string_view data;
};

struct Dispatcher::CodeAction {
    /// All codes that are carried out alike.
    std::string_view codes;
    void (*run)(Dispatcher& self, const Message& message);
};

std::span<const Dispatcher::CodeAction> Dispatcher::codeActions() {
    using Self = Dispatcher&;
    using In = const Message&;
    constexpr auto profile = [](Self self, In message) { self.chooseProfile(message.code - '0'); };
    constexpr auto cooldowns = [](Self self, In message) {
        self.m_parts.cooldowns.updateCooldowns(message.code, message.data);
    };
    static constexpr CodeAction kActions[] = {
        {"R", [](Self self, In) { self.resetLights(ResetNotice::Logged); }},
        {"-", [](Self self, In) { self.resetLights(ResetNotice::Silent); }},
        {"C", [](Self self, In) { self.startCombat(); }},
        {"O", [](Self self, In) { self.endCombat(); }},
        {"D", [](Self self, In) { self.startDeath(); }},
        {"U", [](Self self, In) { self.endDeath(); }},
        {"w", [](Self self, In) { self.setCombatPulsePeriod(400); }},
        {"x", [](Self self, In) { self.setCombatPulsePeriod(300); }},
        {"y", [](Self self, In) { self.setCombatPulsePeriod(200); }},
        {"z", [](Self self, In) { self.setCombatPulsePeriod(100); }},
        {"p", [](Self self, In) { self.toggleProfile(); }},
        {"j",
         [](Self self, In) {
             self.startShadow({183.0 / 360.0, 0.5, 0.6});
         }},
        {"k",
         [](Self self, In) {
             self.startShadow({220.0 / 360.0, 0.77, 0.52});
         }},
        {"l",
         [](Self self, In) {
             self.startShadow({137.0 / 360.0, 0.51, 0.73});
         }},
        {"K", [](Self self, In) { self.endShadow(); }},
        {"123456789", profile},
        {"E", [](Self self, In) { self.openChat(); }},
        {"e", [](Self self, In) { self.closeChat(); }},
        {"I", [](Self self, In) { self.signalWhisper(); }},
        {"i", [](Self, In) {}}, // not unknown, but MessagePump has ended the signal already
        {"`[]{}", cooldowns},
    };
    return kActions;
}

Dispatcher::Dispatcher(const Parts& parts) : m_parts(parts) {
}

void Dispatcher::evaluateMessage(std::string_view message) {
    if (message.front() == '\0') {
        m_parts.log.appendDebugLog("ignoring message NULL (00)\n");
        return;
    }
    // The line is put together only if the log shows it.
    const auto trace = [&](std::string_view before, std::string_view after) {
        if (m_parts.log.debugMode())
            m_parts.log.appendLog(std::string(before) + std::string(message) + " (" + hexBytes(message) +
                                  ")" + std::string(after) + "\n");
    };
    trace("evaluating message ", "");
    const char code = message.front();
    const std::span<const CodeAction> actions = codeActions();
    const auto action = std::ranges::find_if(
        actions, [code](const CodeAction& row) { return row.codes.find(code) != std::string_view::npos; });
    if (const Animation* const animation = findAnimation(code))
        show(*animation);
    else if (action != actions.end())
        action->run(*this, {code, message.substr(1)});
    else
        trace("Ignored message ", " from buffer");
}

void Dispatcher::resetLights(ResetNotice notice) {
    if (notice == ResetNotice::Logged)
        m_parts.log.appendLog("Reset the message queue, color profile, and animated keys.\n");
    m_parts.messages.messageQueue.set({});
    m_parts.messages.currentMessage.clear();
    // In single-colour mode the whole keyboard is stopped below.
    if ((m_parts.effects.combatAnimationPlaying || m_parts.effects.deadAnimationPlaying) &&
        !m_parts.options.useSingleColorMode)
        m_parts.effects.leftPulsing = true;
    m_parts.effects.combatAnimationPlaying = false;
    m_parts.effects.deadAnimationPlaying = false;
    m_parts.effects.shadowAnimationPlaying = false;
    m_parts.animations.stopAllKeyEffects(m_parts.options.useSingleColorMode);
    m_parts.messages.confirmCalibrate = true;
    switchToProfile(kResetProfile);
}

void Dispatcher::startCombat() {
    pulseCombatKeys();
    m_parts.effects.combatAnimationPlaying = true;
}

void Dispatcher::endCombat() {
    m_parts.driver.LogiLedSetTargetDevice(lighting::kPerKeyDevices);
    for (const KeyName key : combatKeys)
        m_parts.driver.LogiLedStopEffectsOnKey(key);
    m_parts.effects.combatAnimationPlaying = false;
    m_parts.effects.leftPulsing = false;
    m_parts.messages.WoWisInTheForeground = 0;
}

void Dispatcher::startDeath() {
    m_parts.lighting.startScatterPulse();
    m_parts.effects.deadAnimationPlaying = true;
}

void Dispatcher::endDeath() {
    m_parts.lighting.stopScatterPulse();
    m_parts.effects.deadAnimationPlaying = false;
    m_parts.effects.leftPulsing = false;
    m_parts.messages.WoWisInTheForeground = 1;
}

void Dispatcher::startShadow(const HsbColor& color) {
    m_parts.animations.shadowGlow(color);
    m_parts.effects.shadowAnimationPlaying = true;
}

void Dispatcher::endShadow() {
    m_parts.animations.stopAllKeyEffects(m_parts.options.useSingleColorMode);
    m_parts.effects.shadowAnimationPlaying = false;
    // The flash alone: when the lighting is shown anew stays as it was.
    static_cast<void>(play(*findAnimation('f')));
}

void Dispatcher::setCombatPulsePeriod(int milliseconds) {
    m_parts.effects.combatPulseMs = milliseconds;
    if (m_parts.effects.combatAnimationPlaying)
        pulseCombatKeys();
}

void Dispatcher::toggleProfile() {
    switchToProfile(m_parts.profile.activeColorProfile % 2 + 1);
}

void Dispatcher::chooseProfile(int profile) {
    m_parts.profile.chatReturnColorProfile = profile;
    switchToProfile(profile);
}

void Dispatcher::openChat() {
    if (m_parts.effects.shadowAnimationPlaying)
        return;
    if (chatRecoloursCombat())
        pulseKeys(m_parts.driver, {100, 100, 100}, {25, 25, 25}, kChatPulseMs);
    if (!chatSwitchesProfile())
        return;
    m_parts.profile.chatReturnColorProfile = m_parts.profile.activeColorProfile;
    switchToProfile(kChatProfile);
}

void Dispatcher::closeChat() {
    if (m_parts.effects.shadowAnimationPlaying)
        return;
    if (chatRecoloursCombat())
        pulseCombatKeys();
    if (chatSwitchesProfile())
        switchToProfile(m_parts.profile.chatReturnColorProfile);
}

void Dispatcher::signalWhisper() {
    if (m_parts.effects.whisperLightActive)
        return;
    m_parts.driver.LogiLedFlashSingleKey(lighting::kEnterKey, 100, 0, 100, 0, kWhisperIntervalMs);
    m_parts.effects.whisperLightActive = true;
}

bool Dispatcher::play(const Animation& animation) {
    const auto profile = static_cast<std::size_t>(m_parts.profile.activeColorProfile);
    return m_parts.animations.play(animation, m_parts.lightingState.keyboardColorBitmap.at(profile),
                                   m_parts.options.useSingleColorMode);
}

void Dispatcher::show(const Animation& animation) {
    if (!play(animation))
        return;
    if (const auto dead = animation.outcome.deadAnimationPlaying)
        m_parts.effects.deadAnimationPlaying = *dead;
    if (const auto countdown = animation.outcome.WoWisInTheForeground)
        m_parts.messages.WoWisInTheForeground = *countdown;
}

void Dispatcher::pulseCombatKeys() {
    pulseKeys(m_parts.driver, {100, 0, 0}, {25, 0, 0}, m_parts.effects.combatPulseMs);
}

void Dispatcher::switchToProfile(int profile) {
    m_parts.profile.activeColorProfile = profile;
    m_parts.store.loadProfileWithCooldowns(profile);
    m_parts.lighting.showProfileLighting(profile);
    if (m_parts.options.useSingleColorMode)
        m_parts.lighting.setAllKeysColor(m_parts.lightingState.keyboardColorSet[lighting::kColorASlot]);
}

bool Dispatcher::chatRecoloursCombat() const {
    return m_parts.effects.combatAnimationPlaying && m_parts.options.combatChatWarning;
}

bool Dispatcher::chatSwitchesProfile() const {
    return m_parts.options.autoToggleProfile2 && !m_parts.effects.deadAnimationPlaying;
}

} // namespace glimra::events
