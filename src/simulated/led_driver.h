#pragma once

#include "platform/led_driver.h"

#include <initializer_list>
#include <string_view>
#include <vector>

namespace glimra::simulated {

/// One call of an LED function with its arguments in order; of a bitmap its bytes.
struct LedCall {
    std::string_view function;
    std::vector<std::int64_t> arguments;
    std::vector<std::uint8_t> bitmap;

    friend bool operator==(const LedCall&, const LedCall&) = default;
};

/// A keyboard that takes everything, as version 9.0.0 of the vendor's driver, and keeps what it was given.
class RecordingLedDriver final : public platform::LedDriver {
public:
    const std::vector<LedCall>& calls() const { return m_calls; }
    void clear() { m_calls.clear(); }

    bool LogiLedInit() override;
    bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) override;
    bool LogiLedSetTargetDevice(int targetDevice) override;
    bool LogiLedSetLighting(int redPercentage, int greenPercentage, int bluePercentage) override;
    bool LogiLedSetLightingFromBitmap(platform::LedBitmapView bitmap) override;
    bool LogiLedSetLightingForKeyWithKeyName(platform::KeyName keyName, int redPercentage,
                                             int greenPercentage, int bluePercentage) override;
    bool LogiLedFlashSingleKey(platform::KeyName keyName, int redPercentage, int greenPercentage,
                               int bluePercentage, int msDuration, int msInterval) override;
    bool LogiLedPulseSingleKey(platform::KeyName keyName, int startRedPercentage, int startGreenPercentage,
                               int startBluePercentage, int finishRedPercentage, int finishGreenPercentage,
                               int finishBluePercentage, int msDuration, bool isInfinite) override;
    bool LogiLedStopEffectsOnKey(platform::KeyName keyName) override;
    bool LogiLedStopEffects() override;
    void LogiLedShutdown() override;

private:
    bool keep(std::string_view function, std::initializer_list<std::int64_t> arguments = {});

    std::vector<LedCall> m_calls;
};

} // namespace glimra::simulated
