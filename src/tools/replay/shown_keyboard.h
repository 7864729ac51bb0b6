#pragma once

#include "keyboards/virtual_keyboard.h"

namespace glimra::tools {

/// The keyboard of a run. It is a virtual one that takes every call and says that its driver has version
/// 9.0.0. After the application has shut it down, it goes on showing its last colours.
class ShownKeyboard final : public platform::LedDriver {
public:
    using KeyName = platform::KeyName;

    explicit ShownKeyboard(std::function<platform::Time()> now) : m_keyboard(std::move(now)) {}

    const keyboards::KeyboardModel& model() const { return m_keyboard.model(); }
    /// Told after each call that may have changed what is seen.
    platform::Signal<>& changed() { return m_keyboard.changed; }

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
    void LogiLedShutdown() override {}

private:
    keyboards::VirtualKeyboard m_keyboard;
};

} // namespace glimra::tools
