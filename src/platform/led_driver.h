#pragma once

#include "platform/color.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <tuple>
#include <variant>

namespace glimra::platform {

/// How the LED functions name a key: ordinary keys by a number like their scan code, G1 to G9 by 0xFFF1 to
/// 0xFFF9, the logo by 0xFFFF1 and the badge by 0xFFFF2.
using KeyName = std::uint32_t;

/// The colours of a whole keyboard as one picture: 21 columns by 6 rows of 4 bytes (blue, green, red, alpha),
/// row after row.
inline constexpr std::size_t kLedBitmapBytes = 504;
using LedBitmapView = std::span<const std::uint8_t, kLedBitmapBytes>;

// Each struct below is one call that changes the lights. It does what the function `kName` of the vendor's
// LED SDK does, and `arguments()` are the arguments of that function, in its order. A new call is a new
// struct and a place in `LedCall`; the compiler then asks for it wherever calls are carried out.

/// Chooses which types of device the following calls are for, a bit for each type: 4 are the devices with a
/// colour for each key, 7 are all devices.
struct SetTargetDevice {
    static constexpr std::string_view kName = "LogiLedSetTargetDevice";
    int targetDevice;
    auto arguments() const { return std::tuple(targetDevice); }
};

/// Gives every key the same colour.
struct SetLighting {
    static constexpr std::string_view kName = "LogiLedSetLighting";
    Percentages color;
    auto arguments() const { return std::tuple(color.red, color.green, color.blue); }
};

/// Gives the keys that are part of the bitmap their colours. The bitmap need not outlive the call.
struct SetLightingFromBitmap {
    static constexpr std::string_view kName = "LogiLedSetLightingFromBitmap";
    LedBitmapView bitmap;
    auto arguments() const { return std::tuple(bitmap); }
};

/// Gives one key a colour.
struct SetLightingForKeyWithKeyName {
    static constexpr std::string_view kName = "LogiLedSetLightingForKeyWithKeyName";
    KeyName keyName;
    Percentages color;
    auto arguments() const { return std::tuple(keyName, color.red, color.green, color.blue); }
};

/// Makes a key flash: it has `color` for `msInterval` milliseconds, its own colour for as long, and so on,
/// until `msDuration` milliseconds have passed. With a duration of 0 it flashes until it is stopped.
struct FlashSingleKey {
    static constexpr std::string_view kName = "LogiLedFlashSingleKey";
    KeyName keyName;
    Percentages color;
    int msDuration;
    int msInterval;
    auto arguments() const {
        return std::tuple(keyName, color.red, color.green, color.blue, msDuration, msInterval);
    }
};

/// Makes a key pulse: its colour moves from `start` to `finish` and back within `msDuration` milliseconds;
/// once, or when `isInfinite` again and again until it is stopped.
struct PulseSingleKey {
    static constexpr std::string_view kName = "LogiLedPulseSingleKey";
    KeyName keyName;
    Percentages start;
    Percentages finish;
    int msDuration;
    bool isInfinite;
    auto arguments() const {
        return std::tuple(keyName, start.red, start.green, start.blue, finish.red, finish.green, finish.blue,
                          msDuration, isInfinite);
    }
};

/// Ends the flash or pulse of one key, which then has its own colour again.
struct StopEffectsOnKey {
    static constexpr std::string_view kName = "LogiLedStopEffectsOnKey";
    KeyName keyName;
    auto arguments() const { return std::tuple(keyName); }
};

/// Ends the flashes and pulses of all keys.
struct StopEffects {
    static constexpr std::string_view kName = "LogiLedStopEffects";
    auto arguments() const { return std::tuple(); }
};

using LedCall =
    std::variant<SetTargetDevice, SetLighting, SetLightingFromBitmap, SetLightingForKeyWithKeyName,
                 FlashSingleKey, PulseSingleKey, StopEffectsOnKey, StopEffects>;

/// The lights of a keyboard. Every function tells whether the driver took the call. Main thread only; no call
/// waits for a device.
class LedDriver {
public:
    virtual ~LedDriver() = default;

    /// Takes the driver into use. Before that, all other functions return false and do nothing.
    virtual bool LogiLedInit() = 0;
    virtual bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) = 0;
    virtual bool perform(const LedCall& call) = 0;
    virtual void LogiLedShutdown() = 0;

    // The same calls by the names and with the arguments of the vendor's functions.

    bool LogiLedSetTargetDevice(int targetDevice) { return perform(SetTargetDevice{targetDevice}); }
    bool LogiLedSetLighting(int redPercentage, int greenPercentage, int bluePercentage) {
        return perform(SetLighting{{redPercentage, greenPercentage, bluePercentage}});
    }
    bool LogiLedSetLightingFromBitmap(LedBitmapView bitmap) { return perform(SetLightingFromBitmap{bitmap}); }
    bool LogiLedSetLightingForKeyWithKeyName(KeyName keyName, int redPercentage, int greenPercentage,
                                             int bluePercentage) {
        return perform(
            SetLightingForKeyWithKeyName{keyName, {redPercentage, greenPercentage, bluePercentage}});
    }
    bool LogiLedFlashSingleKey(KeyName keyName, int redPercentage, int greenPercentage, int bluePercentage,
                               int msDuration, int msInterval) {
        return perform(FlashSingleKey{
            keyName, {redPercentage, greenPercentage, bluePercentage}, msDuration, msInterval});
    }
    bool LogiLedPulseSingleKey(KeyName keyName, int startRedPercentage, int startGreenPercentage,
                               int startBluePercentage, int finishRedPercentage, int finishGreenPercentage,
                               int finishBluePercentage, int msDuration, bool isInfinite) {
        return perform(PulseSingleKey{keyName,
                                      {startRedPercentage, startGreenPercentage, startBluePercentage},
                                      {finishRedPercentage, finishGreenPercentage, finishBluePercentage},
                                      msDuration,
                                      isInfinite});
    }
    bool LogiLedStopEffectsOnKey(KeyName keyName) { return perform(StopEffectsOnKey{keyName}); }
    bool LogiLedStopEffects() { return perform(StopEffects{}); }
};

} // namespace glimra::platform
