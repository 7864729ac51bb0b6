#include "keyboards/model/keyboard_model.h"

#include <algorithm>

namespace glimra::keyboards {

namespace {

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

/// The percentages of which these are the bytes.
Percentages toPercentages(Rgb color) {
    const auto percent = [](int byte) { return (byte * 100 + 127) / 255; };
    return {percent(color.red), percent(color.green), percent(color.blue)};
}

void repeatEffect(const KeyEffect& effect, KeyName key, platform::LedDriver& driver) {
    const auto milliseconds = static_cast<int>(effect.period / std::chrono::milliseconds(1));
    const auto [red, green, blue] = toPercentages(effect.start);
    const auto [lastRed, lastGreen, lastBlue] = toPercentages(effect.finish);
    if (effect.kind == KeyEffect::Kind::Flash)
        driver.LogiLedFlashSingleKey(key, red, green, blue, 0, milliseconds);
    else if (effect.kind == KeyEffect::Kind::Pulse)
        driver.LogiLedPulseSingleKey(key, red, green, blue, lastRed, lastGreen, lastBlue, milliseconds, true);
}

/// All of `to` in a mixture, in the fixed-point form in which shares are reckoned.
constexpr int kWhole = 1 << 16;

Rgb mixed(Rgb from, Rgb to, int shareOfTo) {
    const auto channel = [shareOfTo](int a, int b) {
        return static_cast<std::uint8_t>((a * kWhole + (b - a) * shareOfTo + kWhole / 2) / kWhole);
    };
    return {channel(from.red, to.red), channel(from.green, to.green), channel(from.blue, to.blue)};
}

Time later(Time time, Duration duration) {
    return duration > Time::max() - time ? Time::max() : time + duration;
}

bool runsAt(const KeyEffect& effect, Time time) {
    return effect.kind != KeyEffect::Kind::None && time < effect.end;
}

Duration elapsedAt(const KeyEffect& effect, Time time) {
    return std::max(time - effect.begin, Duration::zero());
}

Rgb colorAt(const KeyEffect& effect, Time time, Rgb base) {
    const Duration elapsed = elapsedAt(effect, time);
    if (effect.kind == KeyEffect::Kind::Flash) {
        const bool lit = effect.period == Duration::zero() || elapsed / effect.period % 2 == 0;
        return lit ? effect.start : base;
    }
    const Duration position = elapsed % effect.period;
    const Duration fromStart = std::min(position, effect.period - position);
    const double share =
        2.0 * static_cast<double>(fromStart.count()) / static_cast<double>(effect.period.count());
    return mixed(effect.start, effect.finish, static_cast<int>(share * kWhole));
}

Time nextChangeOf(const KeyEffect& effect, Time after) {
    if (effect.kind == KeyEffect::Kind::Pulse)
        return std::min(effect.start == effect.finish ? Time::max() : later(after, kFrame), effect.end);
    if (effect.period == Duration::zero())
        return effect.end;
    const Duration untilEdge = effect.period - elapsedAt(effect, after) % effect.period;
    return std::min(later(std::max(after, effect.begin), untilEdge), effect.end);
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

void KeyboardModel::setTargetDevice(int targetDevice) {
    m_targetDevice = targetDevice;
}

void KeyboardModel::setLighting(const Percentages& color) {
    if (isMeant())
        m_base.fill(toBytes(color));
}

void KeyboardModel::setBitmap(platform::LedBitmapView bitmap) {
    if (!isMeant())
        return;
    for (const BitmapKey& key : kBitmapKeys)
        m_base[key.index] = {bitmap[key.offset + 2], bitmap[key.offset + 1], bitmap[key.offset]};
}

bool KeyboardModel::setKey(KeyName keyName, const Percentages& color) {
    const std::optional<std::size_t> index = keyIndex(keyName);
    if (index && isMeant())
        m_base[*index] = toBytes(color);
    return index.has_value();
}

bool KeyboardModel::flash(KeyName keyName, const Percentages& color, Duration duration, Duration interval,
                          Time now) {
    const Rgb lit = toBytes(color);
    return put(keyName, {.kind = KeyEffect::Kind::Flash,
                         .start = lit,
                         .finish = lit,
                         .period = std::max(interval, Duration::zero()),
                         .begin = now,
                         .end = duration == Duration::zero() ? Time::max() : later(now, duration)});
}

bool KeyboardModel::pulse(KeyName keyName, const Percentages& start, const Percentages& finish,
                          Duration duration, Repeat repeat, Time now) {
    if (duration <= Duration::zero())
        return put(keyName, {});
    return put(keyName, {.kind = KeyEffect::Kind::Pulse,
                         .start = toBytes(start),
                         .finish = toBytes(finish),
                         .period = duration,
                         .begin = now,
                         .end = repeat == Repeat::UntilStopped ? Time::max() : later(now, duration)});
}

bool KeyboardModel::stopEffectsOnKey(KeyName keyName) {
    return put(keyName, {});
}

void KeyboardModel::stopEffects() {
    if (isMeant())
        m_effects.fill({});
}

void KeyboardModel::repeatOn(platform::LedDriver& driver) const {
    driver.LogiLedSetTargetDevice(m_targetDevice);
    for (std::size_t index = 0; index < kKeyCount; ++index) {
        const KeyName key = lighting::driverKeyName(lighting::kKeyboardLayout[index].code);
        const auto [red, green, blue] = toPercentages(m_base[index]);
        driver.LogiLedSetLightingForKeyWithKeyName(key, red, green, blue);
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

std::optional<Time> KeyboardModel::nextChange(Time after) const {
    Time next = Time::max();
    for (const KeyEffect& effect : m_effects)
        if (runsAt(effect, after))
            next = std::min(next, nextChangeOf(effect, after));
    return next == Time::max() ? std::nullopt : std::optional(next);
}

bool KeyboardModel::isMeant() const {
    return (m_targetDevice & lighting::kPerKeyDevices) != 0;
}

bool KeyboardModel::put(KeyName keyName, const KeyEffect& effect) {
    const std::optional<std::size_t> index = keyIndex(keyName);
    if (index && isMeant())
        m_effects[*index] = effect;
    return index.has_value();
}

} // namespace glimra::keyboards
