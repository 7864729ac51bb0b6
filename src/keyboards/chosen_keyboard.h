#pragma once

#include "keyboards/drivers.h"
#include "keyboards/virtual_keyboard.h"
#include "platform/controls.h"
#include "platform/run_loop.h"

#include <memory>
#include <string>
#include <string_view>

namespace glimra::keyboards {

/// The keyboard that lights up: the drawn one, and with it a real one by the driver that was chosen. The
/// drawn keyboard always works, even when the real one fails. Main thread.
class ChosenKeyboard final : public platform::LedDriver {
public:
    struct Options {
        /// The name of a driver, or `kAutomaticDriver`.
        std::string driver{kAutomaticDriver};
        DriverOptions drivers;
    };

    /// A device's writer has a thread of its own; what it reports is posted to `runLoop`, which must outlive
    /// the keyboard.
    ChosenKeyboard(Options options, platform::RunLoop& runLoop);

    VirtualKeyboard& drawn() { return m_drawn; }

    /// What lights up, in plain words: "keyboard G810 on USB".
    platform::Property<std::string> description;
    /// Emits sentences for the log, without line ends.
    platform::Signal<std::string_view> told;

    /// What the player has told about the lights of an OpenRGB keyboard.
    openrgb::HandPlacing& placing() { return *m_options.drivers.openRgb.placing; }
    const std::string& chosen() const { return m_options.driver; }
    /// Hands the present keyboard back, and lights another one with all that is shown now.
    void choose(std::string_view driver);
    /// Sends all colours again: a keyboard forgets them while the computer sleeps.
    void resendAll();

    /// False when the driver that was asked for by name cannot light anything.
    bool LogiLedInit() override;
    bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) override;
    bool perform(const platform::LedCall& call) override;
    void LogiLedShutdown() override;

private:
    /// Lights a keyboard by the first of the drivers to choose from, of which some go on looking for one.
    /// Tells the log what it does, and why other drivers were not taken.
    bool take();
    /// Both return why that is not possible, as a sentence, or nothing.
    std::string start(const DriverRow& row);
    std::string attach(std::vector<std::unique_ptr<KeyboardDevice>> devices);
    /// Hands the real keyboard back, and stops looking for one.
    void letGo();
    void heed(const DeviceEvent& event);

    Options m_options;
    platform::RunLoop& m_runLoop;
    VirtualKeyboard m_drawn;
    /// The driver of a real keyboard with effects of its own; null when none is in use.
    std::unique_ptr<platform::LedDriver> m_library;
    /// Exists as long as the device that was attached last is in use. A report that arrives on the main
    /// thread when the device has been let go finds it gone, and is dropped.
    std::shared_ptr<const bool> m_attached;
    bool m_open = false;
};

} // namespace glimra::keyboards
