#include "lighting/lighting_output.h"

namespace glimra::lighting {

namespace {

constexpr Color kScatterColor{0.5, 0.4, 0.5};

/// Caps Lock, 3, R, I, B, Right Shift, NumPad 9, NumPad 2, Home, Backspace, Esc, F7, X, G7, G4.
constexpr std::array<KeyName, 15> kBrightScatterKeys{0x3A,  0x04, 0x13, 0x17, 0x30, 0x36,   0x49,  0x50,
                                                     0x147, 0x0E, 0x01, 0x41, 0x2D, 0xFFF7, 0xFFF4};
/// Left Control, 5, U, M, F10, W, Spacebar, P, Delete, Arrow Down, NumPad /, G1.
constexpr std::array<KeyName, 12> kDarkScatterKeys{0x1D, 0x06, 0x16,  0x32,  0x44,  0x11,
                                                   0x39, 0x19, 0x153, 0x150, 0x135, 0xFFF1};

constexpr int kScatterPeriodMs = 650;
constexpr std::uint32_t kScatterSpreadMs = 250;

} // namespace

LightingOutput::LightingOutput(platform::LedDriver& driver, platform::RandomNumbers& random,
                               const LightingState& state)
    : m_driver(driver),
      m_random(random),
      m_state(state) {
}

void LightingOutput::setKeyToProfileColor(KeyCode code, KeyName keyName) {
    const bool dimmed = m_state.useSpellCooldowns[0] && m_state.dimmedKeys.contains(code);
    setKeyColor(keyName, dimmed ? m_state.keyboardColorSet[kCooldownSlot]
                                : mappedColor(m_state.keyboardColorSet, m_state.keyToColorMap, code));
}

void LightingOutput::showProfileLighting(int profile) {
    m_driver.LogiLedSetLightingFromBitmap(m_state.keyboardColorBitmap.at(static_cast<std::size_t>(profile)));
    for (const IndividuallyLitKey& key : individuallyLitKeys)
        setKeyToProfileColor(key.code, key.keyName);
}

void LightingOutput::setAllKeysColor(const Color& color) {
    m_driver.LogiLedSetTargetDevice(m_state.singleColorFlag ? kAllDevices : kPerKeyDevices);
    const Percentages percent = toPercentages(color);
    m_driver.LogiLedSetLighting(percent.red, percent.green, percent.blue);
}

void LightingOutput::setKeyColor(KeyName keyName, const Color& color) {
    const Percentages percent = toPercentages(color);
    m_driver.LogiLedSetLightingForKeyWithKeyName(keyName, percent.red, percent.green, percent.blue);
}

void LightingOutput::startScatterPulse() {
    m_driver.LogiLedSetTargetDevice(kAllDevices);
    setAllKeysColor(kScatterColor);
    const auto pulse = [this](std::span<const KeyName> keys, const Percentages& finish) {
        for (const KeyName key : keys) {
            const int period = kScatterPeriodMs + static_cast<int>(m_random.uniform(kScatterSpreadMs));
            m_driver.LogiLedPulseSingleKey(key, 50, 40, 50, finish.red, finish.green, finish.blue, period,
                                           true);
        }
    };
    pulse(kBrightScatterKeys, {100, 85, 100});
    pulse(kDarkScatterKeys, {20, 10, 20});
}

void LightingOutput::stopScatterPulse() {
    m_driver.LogiLedSetTargetDevice(kPerKeyDevices);
    for (const KeyName key : kBrightScatterKeys)
        m_driver.LogiLedStopEffectsOnKey(key);
    for (const KeyName key : kDarkScatterKeys)
        m_driver.LogiLedStopEffectsOnKey(key);
    m_driver.LogiLedSetTargetDevice(kAllDevices);
}

} // namespace glimra::lighting
