#pragma once

#include "keyboards/device/device_writer.h"
#include "keyboards/model/keyboard_model.h"
#include "platform/controls.h"
#include "platform/led_driver.h"

#include <functional>
#include <memory>

namespace glimra::keyboards {

/// A keyboard in memory. The window draws it, and a real keyboard that has no effects of its own can be
/// attached to it, which then shows the same. Before `LogiLedInit` and after `LogiLedShutdown`, which leaves
/// all keys dark, it refuses every call: it returns false and does nothing. Main thread only.
class VirtualKeyboard final : public platform::LedDriver {
public:
    /// `now` tells the time at which an effect begins. For real keyboards it must be CLOCK_MONOTONIC, by
    /// which their writer goes.
    explicit VirtualKeyboard(std::function<Time()> now);

    const KeyboardModel& model() const { return m_model; }

    /// Emitted after each call that may have changed what is seen. Not emitted when the picture changes only
    /// because time passes; `KeyboardModel::nextChange` tells when that happens.
    platform::Signal<> changed;

    /// From now on shows everything on a real keyboard as well, until `detach` or `LogiLedShutdown` hands it
    /// back. A keyboard that was attached before is handed back first. Waits for neither. `report` is called
    /// on another thread, with what becomes of the device. Throws std::system_error when the system has no
    /// thread or no file descriptor to give.
    void attach(std::unique_ptr<KeyboardDevice> device, DeviceWriter::Report report);
    /// Hands the real keyboard back, if there is one, without waiting for it.
    void detach();
    /// Sends every key to the real keyboard again, if there is one.
    void resendAll();

    bool LogiLedInit() override;
    bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) override;
    bool perform(const platform::LedCall& call) override;
    void LogiLedShutdown() override;

private:
    /// Shows the model, which has changed, to those who draw it and to the real keyboard.
    void show();

    std::function<Time()> m_now;
    KeyboardModel m_model;
    bool m_open = false;
    /// Something was lit. Until then a real keyboard keeps the lights that it has.
    bool m_hasShown = false;
    std::unique_ptr<DeviceWriter> m_writer;
    /// Belongs to the device that was detached last, and is set as soon as that device is closed. The next
    /// device is opened only then.
    std::shared_ptr<const WakeEvent> m_detached;
};

} // namespace glimra::keyboards
