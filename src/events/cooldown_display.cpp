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

/// The code of the first UTF-8 character. The length bits of its first byte are left in: they end up above
/// the bits that slots have.
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

CooldownDisplay::CooldownDisplay(const Parts& parts) : m_parts(parts) {
}

void CooldownDisplay::updateCooldowns(char code, std::string_view data) {
    const auto* const range = std::ranges::find(kSlotRanges, code, &SlotRange::code);
    if (data.empty() || range == kSlotRanges.end())
        return;
    const unsigned bits = dataBits(data);
    for (std::size_t i = 0; i < kSlotBits.size(); ++i) {
        const KeyCode key = (m_parts.keys.*range->bar)[range->firstSlot + i];
        const bool onCooldown = (bits & kSlotBits[i]) != 0;
        if (onCooldown == m_parts.lightingState.dimmedKeys.contains(key))
            continue;
        if (onCooldown)
            markOnCooldown(key);
        else if (!markReady(key))
            return;
    }
    if (m_parts.cooldowns.supressCooldownBlinkCounter > 0)
        --m_parts.cooldowns.supressCooldownBlinkCounter;
}

bool CooldownDisplay::isLive(KeyCode key) const {
    return key != lighting::kNoKey && m_parts.lightingState.useSpellCooldowns[0] &&
           !m_parts.effects.deadAnimationPlaying && !m_parts.effects.shadowAnimationPlaying;
}

void CooldownDisplay::markOnCooldown(KeyCode key) {
    const lighting::Color color = m_parts.lightingState.keyboardColorSet[lighting::kCooldownSlot];
    for (std::size_t profile = 1; profile <= lighting::kProfileCount; ++profile) {
        if (!m_parts.lightingState.useSpellCooldowns[profile])
            continue;
        paint(key, color, profile);
        if (isLive(key)) {
            m_parts.driver.LogiLedStopEffectsOnKey(lighting::driverKeyName(key));
            m_parts.lighting.setKeyColor(lighting::driverKeyName(key), color);
        }
    }
    m_parts.lightingState.dimmedKeys.insert(key);
}

/// False when the application terminated meanwhile.
bool CooldownDisplay::markReady(KeyCode key) {
    const lighting::Color color = lighting::mappedColor(m_parts.lightingState.keyboardColorSet,
                                                        m_parts.lightingState.keyToColorMap, key);
    const bool blinks = m_parts.cooldowns.supressCooldownBlinkCounter == 0;
    for (std::size_t profile = 1; profile <= lighting::kProfileCount; ++profile) {
        if (!m_parts.lightingState.useSpellCooldowns[profile])
            continue;
        paint(key, color, profile);
        if (!isLive(key)) // asked for every profile: the user may have done something during the last blink
            continue;
        m_parts.lighting.setKeyColor(lighting::driverKeyName(key), color);
        if (blinks && !blink(key))
            return false;
    }
    m_parts.lightingState.dimmedKeys.erase(key);
    return true;
}

void CooldownDisplay::paint(KeyCode key, const lighting::Color& color, std::size_t profile) {
    if (const std::optional<std::size_t> offset = lighting::keyBitmapOffset(key))
        lighting::paintCell(m_parts.lightingState.keyboardColorBitmap[profile], *offset,
                            lighting::toRgb(color));
}

bool CooldownDisplay::blink(KeyCode key) {
    if (!m_parts.runLoop.runUntil(m_parts.runLoop.now() + kPauseBeforeBlink))
        return false;
    m_parts.driver.LogiLedFlashSingleKey(lighting::driverKeyName(key), 100, 100, 100,
                                         toMilliseconds(m_parts.cooldowns.blinkPeriod), kBlinkIntervalMs);
    return true;
}

void CooldownDisplay::showCooldowns(bool on) {
    m_parts.lightingState.useSpellCooldowns[0] = on;
    m_parts.canvas.usingActionbarCooldowns = on;
    m_parts.canvas.fillIfEmpty(m_parts.lightingState);
    const auto profile = static_cast<std::size_t>(m_parts.profile.activeColorProfile);
    m_parts.lightingState.keyboardColorBitmap.at(profile) = lighting::buildColorBitmapWithCooldowns(
        m_parts.canvas.keyColorSet, m_parts.canvas.keysToColors, on, m_parts.lightingState.dimmedKeys);
    m_parts.lightingState.useSpellCooldowns.at(profile) = on;
    m_parts.lighting.showProfileLighting(m_parts.profile.activeColorProfile);
    if (m_parts.options.useSingleColorMode)
        m_parts.lighting.setAllKeysColor(m_parts.lightingState.keyboardColorSet[lighting::kColorASlot]);
    m_parts.canvasView.displayNeeded.emit();
    m_parts.store.saveCooldownFlag(on, m_parts.profile.activeColorProfile);
}

void CooldownDisplay::revealCooldownColors() {
    m_parts.canvas.dimmedKeys.clear();
    for (const profiles::BarKeys& bar :
         {m_parts.keys.actionBar1Keys, m_parts.keys.actionBar5Keys, m_parts.keys.actionBar6Keys})
        m_parts.canvas.dimmedKeys.insert(bar.begin(), bar.end());
    m_parts.canvasView.displayNeeded.emit();
    m_parts.runLoop.after(kPreviewTime, [this] { unrevealCooldownColors(); });
}

void CooldownDisplay::unrevealCooldownColors() {
    m_parts.canvas.dimmedKeys.clear();
    m_parts.canvasView.displayNeeded.emit();
}

void CooldownDisplay::loadBlinkTime() {
    constexpr platform::Setting<double> kSetting = platform::settings::kBlinkTime;
    const double stored = platform::SettingsReader{m_parts.defaults, m_parts.systemLog}.value(kSetting);
    setBlinkTime(stored == 0.0 ? kSetting.factory : stored);
}

void CooldownDisplay::blinkTimeChanged() {
    setBlinkTime(platform::leadingNumber(m_parts.blinkTimeTextbox.text.get()));
    m_parts.defaults.set(platform::settings::kBlinkTime.key, m_parts.cooldowns.blinkTime);
}

void CooldownDisplay::setBlinkTime(double seconds) {
    m_parts.cooldowns.blinkTime = std::max(seconds, kShortestBlinkTime);
    m_parts.cooldowns.blinkPeriod = m_parts.cooldowns.blinkTime;
    m_parts.blinkTimeTextbox.text.set(platform::decimalText(m_parts.cooldowns.blinkTime));
}

} // namespace glimra::events
