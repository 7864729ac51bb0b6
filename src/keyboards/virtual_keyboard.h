#pragma once

#include "keyboards/device/device_writer.h"
#include "keyboards/model/keyboard_model.h"
#include "platform/controls.h"
#include "platform/led_driver.h"

#include <functional>
#include <memory>

namespace glimra::keyboards {

/// A keyboard in memory: all there is without a real one, and what real ones without effects of their own are
/// made to show. It refuses every call (false, and nothing happens) before `LogiLedInit` and after
/// `LogiLedShutdown`, which leaves all keys dark. Main thread only.
class VirtualKeyboard final : public platform::LedDriver {
public:
    /// Effects begin at the time that `now` tells; by CLOCK_MONOTONIC when a device is attached.
    explicit VirtualKeyboard(std::function<Time()> now);

    const KeyboardModel& model() const { return m_model; }

    /// What is seen may have changed, by a call: the passing of time tells nobody.
    platform::Signal<> changed;

    /// Shows everything on a real keyboard as well, in place of the one before, until `LogiLedShutdown` hands
    /// it back. Does not wait for either. `report` is told what becomes of the device, on another thread.
    /// Throws std::system_error when the machine gives no thread or no file descriptor.
    void attach(std::unique_ptr<KeyboardDevice> device, DeviceWriter::Report report);
    /// Hands the real keyboard back, without waiting for it.
    void detach();
    /// Sends every key to the real keyboard again, if there is one.
    void resendAll();

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
    std::unique_ptr<DeviceWriter> m_writer;
    /// Set when the last device that was detached is closed.
    std::shared_ptr<const WakeEvent> m_detached;
};

} // namespace glimra::keyboards
