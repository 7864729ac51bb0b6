#include "events/effects.h"

#include "events/band_painter.h"
#include "events/frame_painter.h"

#include <algorithm>
#include <cmath>

namespace glimra::events {

namespace {

using lighting::kAllDevices;
using lighting::kBitmapRows;
using lighting::kPerKeyDevices;
using lighting::Percentages;

constexpr double kGlowDepth = 0.3;
constexpr int kGlowPeriodMs = 800;
constexpr std::uint32_t kGlowSpreadMs = 800;

/// The standard conversion, https://en.wikipedia.org/wiki/HSL_and_HSV#HSV_to_RGB_alternative
Color fromHsb(const HsbColor& hsb) {
    const auto component = [&hsb](double n) {
        const double k = std::fmod(n + hsb.hue * 6.0, 6.0);
        return hsb.brightness - hsb.brightness * hsb.saturation * std::max(0.0, std::min({k, 4.0 - k, 1.0}));
    };
    return {component(5.0), component(3.0), component(1.0)};
}

/// Carries out what a step does on the keyboard.
struct Player {
    platform::LedDriver& driver;
    lighting::LightingOutput& lighting;
    const LedBitmap profile;
    LedBitmap working = profile;

    void operator()(const TargetDevices& target) { driver.LogiLedSetTargetDevice(target.devices); }
    void operator()(const AllKeys& all) { lighting.setAllKeysColor(all.color); }
    void operator()(const OneKey& one) { lighting.setKeyColor(one.key, one.color); }
    void operator()(const Frame& frame) {
        paintFrame(working, frame, profile);
        driver.LogiLedSetLightingFromBitmap(working);
    }
};

} // namespace

Effects::Effects(platform::RunLoop& runLoop, platform::LedDriver& driver, platform::RandomNumbers& random,
                 lighting::LightingOutput& lighting)
    : m_runLoop(runLoop),
      m_driver(driver),
      m_random(random),
      m_lighting(lighting) {
}

bool Effects::play(const Animation& animation, const LedBitmap& profile, bool singleColorMode) {
    // Copies the profile's bitmap: what the run loop does during a wait may build the original anew.
    Player player{m_driver, m_lighting, profile};
    const bool asOneColor = singleColorMode && !animation.singleColor.empty();
    for (const Step& step : asOneColor ? animation.singleColor : animation.overProfile) {
        std::visit(player, step.action);
        if (step.wait > Duration::zero() && !m_runLoop.runUntil(m_runLoop.now() + step.wait))
            return false;
    }
    return true;
}

void Effects::shadowGlow(const HsbColor& color) {
    const auto withBrightness = [&color](double brightness) {
        return lighting::toPercentages(fromHsb({color.hue, color.saturation, brightness}));
    };
    const Percentages dark = withBrightness(std::max(color.brightness - kGlowDepth, 0.0));
    const Percentages bright = withBrightness(std::min(color.brightness + kGlowDepth, 1.0));
    m_driver.LogiLedSetTargetDevice(kAllDevices);
    m_lighting.setAllKeysColor(fromHsb(color));
    m_driver.LogiLedSetTargetDevice(kPerKeyDevices);
    for (std::size_t row = 0; row < kBitmapRows; ++row) {
        const int period = kGlowPeriodMs + static_cast<int>(m_random.uniform(kGlowSpreadMs));
        for (const BandKey& key : keysOfRow(row))
            m_driver.LogiLedPulseSingleKey(key.code, dark.red, dark.green, dark.blue, bright.red,
                                           bright.green, bright.blue, period, true);
    }
    m_driver.LogiLedSetTargetDevice(kAllDevices);
}

void Effects::stopAllKeyEffects(bool singleColorMode) {
    m_driver.LogiLedSetTargetDevice(kAllDevices);
    if (singleColorMode)
        m_driver.LogiLedStopEffects();
    for (std::size_t row = 0; row < kBitmapRows; ++row)
        for (const BandKey& key : keysOfRow(row))
            m_driver.LogiLedStopEffectsOnKey(key.code);
}

} // namespace glimra::events
