#pragma once

#include "platform/led_driver.h"
#include "trace/trace_writer.h"

namespace glimra::trace {

/// Writes each call and then passes it on, so that lines which the driver causes come after it. Returns the
/// driver's results.
class TracedLedDriver final : public platform::LedDriver {
public:
    using KeyName = platform::KeyName;

    TracedLedDriver(platform::LedDriver& driver, TraceWriter& writer);

    bool LogiLedInit() override;
    bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) override;
    bool LogiLedSetTargetDevice(int targetDevice) override;
    bool LogiLedSetLighting(int redPercentage, int greenPercentage, int bluePercentage) override;
    bool LogiLedSetLightingFromBitmap(platform::LedBitmapView bitmap) override;
    bool LogiLedSetLightingForKeyWithKeyName(KeyName keyName, int redPercentage, int greenPercentage,
                                             int bluePercentage) override;
    bool LogiLedFlashSingleKey(KeyName keyName, int redPercentage, int greenPercentage, int bluePercentage,
                               int msDuration, int msInterval) override;
    bool LogiLedPulseSingleKey(KeyName keyName, int startRedPercentage, int startGreenPercentage,
                               int startBluePercentage, int finishRedPercentage, int finishGreenPercentage,
                               int finishBluePercentage, int msDuration, bool isInfinite) override;
    bool LogiLedStopEffectsOnKey(KeyName keyName) override;
    bool LogiLedStopEffects() override;
    void LogiLedShutdown() override;

private:
    platform::LedDriver& m_driver;
    TraceWriter& m_writer;
};

} // namespace glimra::trace
