#include "events/cooldown_display.h"

#include "platform/decimal_text.h"
#include "platform/stored_values.h"

#include <algorithm>
#include <limits>

namespace glimra::events {

namespace {

using lighting::KeyCode;

constexpr double kShortestBlinkTime = 0.01;
constexpr int kBlinkIntervalMs = 75;
constexpr platform::Duration kPauseBeforeBlink = std::chrono::milliseconds(50);
constexpr platform::Duration kPreviewTime = std::chrono::seconds(1);

/// The six slots that a code reports on, from `firstSlot` of a bar.
struct SlotRange {
    char code;
    profiles::BarKeys profiles::ActionKeyMap::*bar;
    std::size_t firstSlot;
};

constexpr std::array<SlotRange, 5> kSlotRanges{{
    {'`', &profiles::ActionKeyMap::actionBar1Keys, 0},
    {'[', &profiles::ActionKeyMap::actionBar1Keys, 6},
    {']', &profiles::ActionKeyMap::actionBar6Keys, 0},
    {'{', &profiles::ActionKeyMap::actionBar6Keys, 6},
    {'}', &profiles::ActionKeyMap::actionBar5Keys, 0},
}};

/// Bit of each slot in the data character, first slot first.
constexpr std::array<unsigned, 6> kSlotBits{0x40, 0x20, 0x10, 0x08, 0x04, 0x02};

int toMilliseconds(double seconds) {
    const double milliseconds = seconds * 1000.0;
    constexpr double kLongest = std::numeric_limits<int>::max();
    return milliseconds < kLongest ? static_cast<int>(milliseconds) : std::numeric_limits<int>::max();
}

/// The lowest bits of the first character's code. What its bytes hold besides ends up above them, where no
/// slot has a bit.
unsigned dataBits(std::string_view data) {
    unsigned bits = static_cast<unsigned char>(data.front());
    for (const char c : data.substr(1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xC0U) != 0x80U) // the next character
            break;
        bits = bits << 6U | (byte & 0x3FU);
    }
    return bits;
}

} // namespace

CooldownDisplay::CooldownDisplay(const Parts& parts) : m(parts) {
}

void CooldownDisplay::updateCooldowns(char code, std::string_view data) {
    const auto* const range = std::ranges::find(kSlotRanges, code, &SlotRange::code);
    if (data.empty() || range == kSlotRanges.end())
        return;
    const unsigned bits = dataBits(data);
    for (std::size_t i = 0; i < kSlotBits.size(); ++i) {
        const KeyCode key = (m.keys.*range->bar)[range->firstSlot + i];
        const bool onCooldown = (bits & kSlotBits[i]) != 0;
        if (onCooldown == m.lightingState.dimmedKeys.contains(key))
            continue;
        if (onCooldown)
            markOnCooldown(key);
        else if (!markReady(key))
            return;
    }
    if (m.cooldowns.supressCooldownBlinkCounter > 0)
        --m.cooldowns.supressCooldownBlinkCounter;
}

bool CooldownDisplay::isLive(KeyCode key) const {
    return key != lighting::kNoKey && m.lightingState.useSpellCooldowns[0] &&
           !m.effects.deadAnimationPlaying && !m.effects.shadowAnimationPlaying;
}

void CooldownDisplay::markOnCooldown(KeyCode key) {
    const lighting::Color color = m.lightingState.keyboardColorSet[lighting::kCooldownSlot];
    for (std::size_t profile = 1; profile <= lighting::kProfileCount; ++profile) {
        if (!m.lightingState.useSpellCooldowns[profile])
            continue;
        paint(key, color, profile);
        if (isLive(key)) {
            m.driver.LogiLedStopEffectsOnKey(lighting::driverKeyName(key));
            m.lighting.setKeyColor(lighting::driverKeyName(key), color);
        }
    }
    m.lightingState.dimmedKeys.insert(key);
}

/// False when the application terminated meanwhile.
bool CooldownDisplay::markReady(KeyCode key) {
    const lighting::Color color =
        lighting::mappedColor(m.lightingState.keyboardColorSet, m.lightingState.keyToColorMap, key);
    const bool blinks = m.cooldowns.supressCooldownBlinkCounter == 0;
    for (std::size_t profile = 1; profile <= lighting::kProfileCount; ++profile) {
        if (!m.lightingState.useSpellCooldowns[profile])
            continue;
        paint(key, color, profile);
        if (!isLive(key)) // asked anew each time: the blink before served the user
            continue;
        m.lighting.setKeyColor(lighting::driverKeyName(key), color);
        if (blinks && !blink(key))
            return false;
    }
    m.lightingState.dimmedKeys.erase(key);
    return true;
}

void CooldownDisplay::paint(KeyCode key, const lighting::Color& color, std::size_t profile) {
    if (const std::optional<std::size_t> offset = lighting::keyBitmapOffset(key))
        lighting::paintCell(m.lightingState.keyboardColorBitmap[profile], *offset, lighting::toRgb(color));
}

bool CooldownDisplay::blink(KeyCode key) {
    if (!m.runLoop.runUntil(m.runLoop.now() + kPauseBeforeBlink))
        return false;
    m.driver.LogiLedFlashSingleKey(lighting::driverKeyName(key), 100, 100, 100,
                                   toMilliseconds(m.cooldowns.blinkPeriod), kBlinkIntervalMs);
    return true;
}

void CooldownDisplay::showCooldowns(bool on) {
    m.lightingState.useSpellCooldowns[0] = on;
    m.canvas.usingActionbarCooldowns = on;
    m.canvas.fillIfEmpty(m.lightingState);
    const auto profile = static_cast<std::size_t>(m.profile.activeColorProfile);
    m.lightingState.keyboardColorBitmap.at(profile) = lighting::buildColorBitmapWithCooldowns(
        m.canvas.keyColorSet, m.canvas.keysToColors, on, m.lightingState.dimmedKeys);
    m.lightingState.useSpellCooldowns.at(profile) = on;
    m.lighting.showProfileLighting(m.profile.activeColorProfile);
    if (m.options.useSingleColorMode)
        m.lighting.setAllKeysColor(m.lightingState.keyboardColorSet[lighting::kColorASlot]);
    m.canvasView.displayNeeded.emit();
    m.store.saveCooldownFlag(on, m.profile.activeColorProfile);
}

void CooldownDisplay::revealCooldownColors() {
    m.canvas.dimmedKeys.clear();
    for (const profiles::BarKeys& bar : {m.keys.actionBar1Keys, m.keys.actionBar5Keys, m.keys.actionBar6Keys})
        m.canvas.dimmedKeys.insert(bar.begin(), bar.end());
    m.canvasView.displayNeeded.emit();
    m.runLoop.after(kPreviewTime, [this] { unrevealCooldownColors(); });
}

void CooldownDisplay::unrevealCooldownColors() {
    m.canvas.dimmedKeys.clear();
    m.canvasView.displayNeeded.emit();
}

void CooldownDisplay::loadBlinkTime() {
    constexpr platform::Setting<double> kSetting = platform::settings::kBlinkTime;
    const double stored = platform::SettingsReader{m.defaults, m.systemLog}.value(kSetting);
    setBlinkTime(stored == 0.0 ? kSetting.factory : stored);
}

void CooldownDisplay::blinkTimeChanged() {
    setBlinkTime(platform::leadingNumber(m.blinkTimeTextbox.text.get()));
    m.defaults.set(platform::settings::kBlinkTime.key, m.cooldowns.blinkTime);
}

void CooldownDisplay::setBlinkTime(double seconds) {
    m.cooldowns.blinkTime = std::max(seconds, kShortestBlinkTime);
    m.cooldowns.blinkPeriod = m.cooldowns.blinkTime;
    m.blinkTimeTextbox.text.set(platform::decimalText(m.cooldowns.blinkTime));
}

} // namespace glimra::events
