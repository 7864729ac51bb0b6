#pragma once

#include "platform/led_driver.h"
#include "platform/system_services.h"

#include <string>
#include <vector>

namespace glimra::tests {

/// Remembers every call as text: the function's name without "LogiLed", then its arguments.
class FakeDriver final : public platform::LedDriver {
public:
    std::vector<std::string> calls;
    std::vector<std::vector<std::uint8_t>> bitmaps;

    /// The calls since the last time, as one text a line.
    std::vector<std::string> take() {
        std::vector<std::string> taken;
        taken.swap(calls);
        return taken;
    }

    bool LogiLedInit() override { return add("Init"); }
    bool LogiLedGetSdkVersion(int& a, int& b, int& c) override {
        a = b = c = 0;
        return add("GetSdkVersion");
    }
    bool LogiLedSetTargetDevice(int target) override { return add("SetTargetDevice", target); }
    bool LogiLedSetLighting(int r, int g, int b) override { return add("SetLighting", r, g, b); }
    bool LogiLedSetLightingFromBitmap(platform::LedBitmapView bitmap) override {
        bitmaps.emplace_back(bitmap.begin(), bitmap.end());
        return add("SetLightingFromBitmap");
    }
    bool LogiLedSetLightingForKeyWithKeyName(platform::KeyName key, int r, int g, int b) override {
        return add("SetLightingForKeyWithKeyName", key, r, g, b);
    }
    bool LogiLedFlashSingleKey(platform::KeyName key, int r, int g, int b, int duration,
                               int interval) override {
        return add("FlashSingleKey", key, r, g, b, duration, interval);
    }
    bool LogiLedPulseSingleKey(platform::KeyName key, int r, int g, int b, int r2, int g2, int b2,
                               int duration, bool infinite) override {
        return add("PulseSingleKey", key, r, g, b, r2, g2, b2, duration, infinite ? "true" : "false");
    }
    bool LogiLedStopEffectsOnKey(platform::KeyName key) override { return add("StopEffectsOnKey", key); }
    bool LogiLedStopEffects() override { return add("StopEffects"); }
    void LogiLedShutdown() override { add("Shutdown"); }

private:
    static std::string text(const char* value) { return value; }
    template <class Number>
    static std::string text(Number value) {
        return std::to_string(value);
    }
    template <class... Arguments>
    bool add(const char* name, Arguments... arguments) {
        std::string call = name;
        ((call += ' ', call += text(arguments)), ...);
        calls.push_back(std::move(call));
        return true;
    }
};

/// Hands out the same number again and again.
class FixedRandom final : public platform::RandomNumbers {
public:
    std::uint32_t value = 0;
    std::uint32_t uniform(std::uint32_t upperBound) override { return value % upperBound; }
};

} // namespace glimra::tests
