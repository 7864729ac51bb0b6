#pragma once

#include "keyboards/drivers.h"
#include "keyboards/virtual_keyboard.h"
#include "platform/controls.h"
#include "platform/run_loop.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace glimra::keyboards {

/// The keyboard that lights up: the drawn one, and with it a real one by the driver that was chosen. The
/// drawn keyboard always works, even when the real one fails. When the choice is automatic and no real
/// keyboard was found, this looks again every half minute whether one has come. Main thread.
class ChosenKeyboard final : public platform::LedDriver {
public:
    struct Options {
        /// The name of a driver, or `kAutomaticDriver`.
        std::string driver{kAutomaticDriver};
        DriverOptions drivers;
        /// How long it waits between two looks for a real keyboard.
        Duration pauseBetweenLooks = std::chrono::seconds(30);
    };

    /// A device's writer has a thread of its own; what it reports is posted to `runLoop`, which must outlive
    /// the keyboard.
    ChosenKeyboard(Options options, platform::RunLoop& runLoop);

    VirtualKeyboard& drawn() { return m_drawn; }

    /// What lights up, in plain words: "keyboard G810 on USB".
    platform::Property<std::string> description;
    /// Emits sentences for the log, without line ends.
    platform::Signal<std::string_view> told;

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
    /// Takes the driver that was asked for, otherwise the first that has something to light. Tells the log
    /// which one was taken, and why the others were not.
    bool take();
    /// Takes this driver; returns why that is not possible, as a sentence, or nothing.
    std::string take(const DriverRow& row, Demand demand);
    std::string attach(std::unique_ptr<KeyboardDevice> device);
    /// Hands the real keyboard back, and stops looking for one.
    void letGo();
    void lookAgain();
    void lookAgainLater();
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
    std::optional<platform::TimerId> m_nextLook;
};

} // namespace glimra::keyboards
