#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace glimra::platform {

/// Name of a key as the LED functions take it: scan-code-like for ordinary keys, 0xFFF1 to 0xFFF9 for G1 to
/// G9, 0xFFFF1 for the logo and 0xFFFF2 for the badge.
using KeyName = std::uint32_t;

/// 21 columns by 6 rows of 4 bytes (blue, green, red, alpha), row after row.
inline constexpr std::size_t kLedBitmapBytes = 504;
using LedBitmapView = std::span<const std::uint8_t, kLedBitmapBytes>;

/// The lights of a keyboard, by the functions of its vendor's LED SDK. Colours are percentages, 0 to 100.
/// Each call tells whether the driver took it. Main thread only; no call waits for a device.
class LedDriver {
public:
    virtual ~LedDriver() = default;

    virtual bool LogiLedInit() = 0;
    virtual bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) = 0;
    /// Bits of the device types that the calls from now on mean: 4 per-key RGB devices, 7 all.
    virtual bool LogiLedSetTargetDevice(int targetDevice) = 0;
    virtual bool LogiLedSetLighting(int redPercentage, int greenPercentage, int bluePercentage) = 0;
    virtual bool LogiLedSetLightingFromBitmap(LedBitmapView bitmap) = 0;
    virtual bool LogiLedSetLightingForKeyWithKeyName(KeyName keyName, int redPercentage, int greenPercentage,
                                                     int bluePercentage) = 0;
    /// Lights a key in the colour for `msInterval`, lets it be for as long, and so on, for `msDuration` (0:
    /// until stopped): a flash begins every second interval.
    virtual bool LogiLedFlashSingleKey(KeyName keyName, int redPercentage, int greenPercentage,
                                       int bluePercentage, int msDuration, int msInterval) = 0;
    /// Pulses a key from the start to the finish colour and back, once in `msDuration`, and when `isInfinite`
    /// again and again until stopped.
    virtual bool LogiLedPulseSingleKey(KeyName keyName, int startRedPercentage, int startGreenPercentage,
                                       int startBluePercentage, int finishRedPercentage,
                                       int finishGreenPercentage, int finishBluePercentage, int msDuration,
                                       bool isInfinite) = 0;
    virtual bool LogiLedStopEffectsOnKey(KeyName keyName) = 0;
    virtual bool LogiLedStopEffects() = 0;
    virtual void LogiLedShutdown() = 0;
};

} // namespace glimra::platform
