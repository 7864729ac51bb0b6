#pragma once

#include "keyboards/keyboard_model.h"
#include "platform/controls.h"
#include "platform/led_driver.h"

#include <functional>

namespace glimra::keyboards {

/// A keyboard in memory: what there is without any other. It refuses every call (false, and nothing happens)
/// before `LogiLedInit` and after `LogiLedShutdown`, which leaves all keys dark. Main thread only.
class VirtualKeyboard final : public platform::LedDriver {
public:
    /// Effects begin at the time that `now` tells.
    explicit VirtualKeyboard(std::function<Time()> now);

    const KeyboardModel& model() const { return m_model; }

    /// What is seen may have changed, by a call: the passing of time tells nobody.
    platform::Signal<> changed;

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
    /// Makes a change unless the keyboard is closed; `change` tells whether it was taken.
    template <class Change>
    bool take(Change change);

    std::function<Time()> m_now;
    KeyboardModel m_model;
    bool m_open = false;
};

} // namespace glimra::keyboards
