#include "events/dispatcher.h"

#include <algorithm>
#include <string>

namespace glimra::events {

using lighting::KeyName;

namespace {

/// The modifiers and arrows around the player's hands, logo and badge, Caps Lock and Enter, by driver name.
constexpr std::array<KeyName, 18> combatKeys{0x2A, 0x1D,  0x15B, 0x38,  0x39,  0x138,   0x15C,   0x15D, 0x11D,
                                             0x36, 0x148, 0x14B, 0x150, 0x14D, 0xFFFF1, 0xFFFF2, 0x3A,  0x1C};

constexpr int kWhisperIntervalMs = 500;

std::string hexBytes(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string hex;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        hex += kDigits[byte >> 4U];
        hex += kDigits[byte & 0xFU];
    }
    return hex;
}

} // namespace

struct Dispatcher::CodeAction {
    char code;
    void (*run)(Dispatcher& dispatcher);
};

/// What each code does; the first row that matches is carried out.
const Dispatcher::CodeAction Dispatcher::kCodeActions[] = {
    {'C', [](Dispatcher& d) { d.startCombat(); }},
    {'O', [](Dispatcher& d) { d.endCombat(); }},
    {'D', [](Dispatcher& d) { d.startDeath(); }},
    {'U', [](Dispatcher& d) { d.endDeath(); }},
    {'w', [](Dispatcher& d) { d.setCombatPulsePeriod(400); }},
    {'x', [](Dispatcher& d) { d.setCombatPulsePeriod(300); }},
    {'y', [](Dispatcher& d) { d.setCombatPulsePeriod(200); }},
    {'z', [](Dispatcher& d) { d.setCombatPulsePeriod(100); }},
    {'I', [](Dispatcher& d) { d.signalWhisper(); }},
    {'i', [](Dispatcher&) {}}, // known, so that it is not reported; the signal ends elsewhere
};

Dispatcher::Dispatcher(const Parts& parts) : m(parts) {
}

void Dispatcher::evaluateMessage(std::string_view message) {
    if (message.front() == '\0') {
        m.log.appendDebugLog("ignoring message NULL (00)\n");
        return;
    }
    // The trace is built only where someone wants it.
    const auto trace = [&](std::string_view before, std::string_view after) {
        if (m.log.debugMode())
            m.log.appendLog(std::string(before) + std::string(message) + " (" + hexBytes(message) + ")" +
                            std::string(after) + "\n");
    };
    trace("evaluating message ", "");
    const auto* const action = std::ranges::find(kCodeActions, message.front(), &CodeAction::code);
    if (action == std::end(kCodeActions))
        trace("Ignored message ", " from buffer");
    else
        action->run(*this);
}

void Dispatcher::startCombat() {
    pulseCombatKeys();
    m.effects.combatAnimationPlaying = true;
}

void Dispatcher::endCombat() {
    m.driver.LogiLedSetTargetDevice(lighting::kPerKeyDevices);
    for (const KeyName key : combatKeys)
        m.driver.LogiLedStopEffectsOnKey(key);
    m.effects.combatAnimationPlaying = false;
    m.messages.WoWisInTheForeground = 0;
}

void Dispatcher::startDeath() {
    m.lighting.startScatterPulse();
    m.effects.deadAnimationPlaying = true;
}

void Dispatcher::endDeath() {
    m.lighting.stopScatterPulse();
    m.effects.deadAnimationPlaying = false;
    m.messages.WoWisInTheForeground = 1;
}

void Dispatcher::setCombatPulsePeriod(int milliseconds) {
    m.effects.combatPulseMs = milliseconds;
    if (m.effects.combatAnimationPlaying)
        pulseCombatKeys();
}

void Dispatcher::signalWhisper() {
    if (m.effects.whisperLightActive)
        return;
    m.driver.LogiLedFlashSingleKey(lighting::kEnterKey, 100, 0, 100, 0, kWhisperIntervalMs);
    m.effects.whisperLightActive = true;
}

void Dispatcher::pulseCombatKeys() {
    m.driver.LogiLedSetTargetDevice(lighting::kPerKeyDevices);
    for (const KeyName key : combatKeys)
        m.driver.LogiLedPulseSingleKey(key, 100, 0, 0, 25, 0, 0, m.effects.combatPulseMs, true);
}

} // namespace glimra::events
