#include "keyboards/model/keyboard_model.h"

#include <algorithm>
#include <span>

namespace glimra::keyboards {

namespace {

using std::chrono::milliseconds;

constexpr std::uint8_t kNoIndex = 0xFF;
static_assert(kKeyCount < kNoIndex);

constexpr auto kIndexOfCode = [] {
    std::array<std::uint8_t, lighting::kKeyCodeCount> indices{};
    indices.fill(kNoIndex);
    for (std::size_t index = 0; index < kKeyCount; ++index)
        indices[lighting::kKeyboardLayout[index].code] = static_cast<std::uint8_t>(index);
    return indices;
}();

struct BitmapKey {
    std::size_t index = 0;
    std::size_t offset = 0;
};

constexpr auto kBitmapKeys = [] {
    std::array<BitmapKey, lighting::keyBitmapOffsets.size()> keys{};
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const lighting::KeyBitmapOffset& key = lighting::keyBitmapOffsets[i];
        keys[i] = {kIndexOfCode[key.code], key.offset};
    }
    return keys;
}();

Rgb toBytes(const Percentages& color) {
    const auto byte = [](int percent) {
        return static_cast<std::uint8_t>((std::clamp(percent, 0, 100) * 255 + 50) / 100);
    };
    return {byte(color.red), byte(color.green), byte(color.blue)};
}

/// The percentages from which `toBytes` made this colour.
Percentages toPercentages(Rgb color) {
    const auto percent = [](int byte) { return (byte * 100 + 127) / 255; };
    return {percent(color.red), percent(color.green), percent(color.blue)};
}

void repeatEffect(const KeyEffect& effect, KeyName key, platform::LedDriver& driver) {
    const auto period = static_cast<int>(effect.period / milliseconds(1));
    const Percentages start = toPercentages(effect.start);
    if (effect.kind == KeyEffect::Kind::Flash)
        driver.perform(platform::FlashSingleKey{key, start, 0, period});
    else if (effect.kind == KeyEffect::Kind::Pulse)
        driver.perform(platform::PulseSingleKey{key, start, toPercentages(effect.finish), period, true});
}

/// An effect on fewer keys does not colour a light that stands for all of them.
constexpr std::size_t kManyKeys = 10;

Rgb mostFrequent(std::span<const Rgb> colors) {
    return *std::ranges::max_element(colors, {},
                                     [&](Rgb color) { return std::ranges::count(colors, color); });
}

} // namespace

std::optional<std::size_t> keyIndex(KeyName keyName) {
    lighting::KeyCode code = keyName;
    if (keyName >= lighting::kFirstIndividualCode) {
        const auto* key =
            std::ranges::find(lighting::individuallyLitKeys, keyName, &lighting::IndividuallyLitKey::keyName);
        if (key == lighting::individuallyLitKeys.end())
            return std::nullopt;
        code = key->code;
    }
    const std::uint8_t index = kIndexOfCode[code];
    return index == kNoIndex ? std::nullopt : std::optional<std::size_t>(index);
}

bool KeyboardModel::perform(const platform::LedCall& call, Time now) {
    return std::visit([&](const auto& one) { return apply(one, now); }, call);
}

bool KeyboardModel::apply(const platform::SetTargetDevice& call, Time) {
    m_targetDevice = call.targetDevice;
    return true;
}

bool KeyboardModel::apply(const platform::SetLighting& call, Time) {
    if (isMeant())
        m_base.fill(toBytes(call.color));
    return true;
}

bool KeyboardModel::apply(const platform::SetLightingFromBitmap& call, Time) {
    if (isMeant())
        for (const auto& [index, offset] : kBitmapKeys)
            m_base[index] = {call.bitmap[offset + 2], call.bitmap[offset + 1], call.bitmap[offset]};
    return true;
}

bool KeyboardModel::apply(const platform::SetLightingForKeyWithKeyName& call, Time) {
    const std::optional<std::size_t> index = keyIndex(call.keyName);
    if (index && isMeant())
        m_base[*index] = toBytes(call.color);
    return index.has_value();
}

bool KeyboardModel::apply(const platform::FlashSingleKey& call, Time now) {
    const Rgb lit = toBytes(call.color);
    return putEffect(call.keyName,
                     {.kind = KeyEffect::Kind::Flash,
                      .start = lit,
                      .finish = lit,
                      .period = milliseconds(std::max(call.msInterval, 0)),
                      .begin = now,
                      .end = call.msDuration == 0 ? Time::max() : now + milliseconds(call.msDuration)});
}

bool KeyboardModel::apply(const platform::PulseSingleKey& call, Time now) {
    if (call.msDuration <= 0)
        return putEffect(call.keyName, {});
    const Duration duration = milliseconds(call.msDuration);
    return putEffect(call.keyName, {.kind = KeyEffect::Kind::Pulse,
                                    .start = toBytes(call.start),
                                    .finish = toBytes(call.finish),
                                    .period = duration,
                                    .begin = now,
                                    .end = call.isInfinite ? Time::max() : now + duration});
}

bool KeyboardModel::apply(const platform::StopEffectsOnKey& call, Time) {
    return putEffect(call.keyName, {});
}

bool KeyboardModel::apply(const platform::StopEffects&, Time) {
    if (isMeant())
        m_effects.fill({});
    return true;
}

void KeyboardModel::repeatOn(platform::LedDriver& driver) const {
    driver.perform(platform::SetTargetDevice{m_targetDevice});
    for (std::size_t index = 0; index < kKeyCount; ++index) {
        const KeyName key = lighting::driverKeyName(lighting::kKeyboardLayout[index].code);
        driver.perform(platform::SetLightingForKeyWithKeyName{key, toPercentages(m_base[index])});
        if (m_effects[index].end == Time::max())
            repeatEffect(m_effects[index], key, driver);
    }
}

KeyColors KeyboardModel::colorsAt(Time time) const {
    KeyColors colors = m_base;
    for (std::size_t index = 0; index < kKeyCount; ++index)
        if (runsAt(m_effects[index], time))
            colors[index] = colorAt(m_effects[index], time, m_base[index]);
    return colors;
}

LightColors KeyboardModel::lightsAt(Time time) const {
    KeyColors colors = m_base;
    for (std::size_t index = 0; index < kKeyCount; ++index)
        if (const KeyEffect& effect = m_effects[index]; runsAt(effect, time))
            colors[index] = colorAt(effect, stepAt(effect, time), m_base[index]);
    KeyColors all{};
    KeyColors moving{};
    std::size_t allCount = 0;
    std::size_t movingCount = 0;
    for (std::size_t index = 0; index < kKeyCount; ++index)
        if (lighting::kKeyboardLayout[index].code < lighting::kFirstIndividualCode) {
            all[allCount++] = colors[index];
            if (runsAt(m_effects[index], time))
                moving[movingCount++] = colors[index];
        }
    LightColors lights{};
    std::ranges::copy(colors, lights.begin());
    lights[kWholeBoard] = mostFrequent(movingCount >= kManyKeys ? std::span(moving).first(movingCount)
                                                                : std::span(all).first(allCount));
    return lights;
}

std::optional<Time> KeyboardModel::nextChange(Time after) const {
    Time next = Time::max();
    for (const KeyEffect& effect : m_effects)
        if (runsAt(effect, after))
            next = std::min(next, nextStep(effect, after));
    return next == Time::max() ? std::nullopt : std::optional(next);
}

bool KeyboardModel::isMeant() const {
    return (m_targetDevice & lighting::kPerKeyDevices) != 0;
}

bool KeyboardModel::putEffect(KeyName keyName, const KeyEffect& effect) {
    const std::optional<std::size_t> index = keyIndex(keyName);
    if (index && isMeant())
        m_effects[*index] = effect;
    return index.has_value();
}

} // namespace glimra::keyboards
