#pragma once

#include "keyboards/driver_choice.h"
#include "keyboards/openrgb/openrgb_device.h"
#include "keyboards/sdk/sdk_driver.h"
#include "keyboards/usb/hid_nodes.h"
#include "keyboards/virtual_keyboard.h"
#include "platform/controls.h"
#include "platform/run_loop.h"

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::keyboards {

/// One of the ways to light a keyboard, as the user chooses among them.
struct DriverName {
    /// On the command line and in the settings.
    std::string_view name;
    /// In plain words.
    std::string_view title;
};

/// In the order in which `kAutomaticDriver` tries them.
inline constexpr std::array<DriverName, 4> kDriverNames{{
    {"sdk", "Vendor's library"},
    {"usb", "Keyboard on USB"},
    {"openrgb", "OpenRGB server"},
    {"virtual", "Keyboard in this window only"},
}};

/// The keyboard that lights up: the one that is drawn, and with it the real one by the driver that was
/// chosen. The drawn one is always there, whatever becomes of the other. While the choice is
/// automatic and nothing but the drawn one is there, it looks every half a minute for what has come. Main
/// thread.
class ChosenKeyboard final : public platform::LedDriver {
public:
    struct Options {
        /// One of `kDriverNames`, or `kAutomaticDriver`.
        std::string driver{kAutomaticDriver};
        /// Where the vendor's library may be.
        std::vector<std::filesystem::path> sdkLibraries;
        openrgb::Options openRgb;
        /// Whether the user has named that server: then it is taken to be there.
        bool openRgbIsNamed = false;
        HidFolders hidFolders;
        /// While nothing but the drawn keyboard is there.
        Duration pauseBetweenLooks = std::chrono::seconds(30);
    };

    /// What a device's writer tells comes in through `runLoop`, which must outlive the keyboard.
    ChosenKeyboard(Options options, platform::RunLoop& runLoop);
    ~ChosenKeyboard() override;

    VirtualKeyboard& drawn() { return m_drawn; }

    /// What lights up, in plain words: "keyboard G810 on USB".
    platform::Property<std::string> description;
    /// Sentences for the log, without line ends.
    platform::Signal<std::string_view> told;

    const std::string& chosen() const { return m_options.driver; }
    /// Hands the present keyboard back and lights another, with all that is shown.
    void choose(std::string_view driver);
    /// Sends everything anew: a keyboard that slept has forgotten its lights.
    void resendAll();

    /// False when the driver that was asked for by name cannot light anything.
    bool LogiLedInit() override;
    bool LogiLedGetSdkVersion(int& majorNumber, int& minorNumber, int& buildNumber) override;
    bool perform(const platform::LedCall& call) override;
    void LogiLedShutdown() override;

private:
    bool take();
    /// A keyboard that is plugged in, or a server that is started, after us.
    void lookAgain();
    void stopLooking();
    std::string takeSdk();
    std::string takeUsb(Demand demand);
    std::string takeOpenRgb(Demand demand);
    std::string attach(std::unique_ptr<KeyboardDevice> device, const std::string& search);
    void letGo();
    void heed(const DeviceEvent& event);

    Options m_options;
    platform::RunLoop& m_runLoop;
    VirtualKeyboard m_drawn;
    std::unique_ptr<SdkDriver> m_sdk;
    /// Counts the keyboards, so that no late word of an earlier one is taken for the present one's.
    std::shared_ptr<int> m_generation = std::make_shared<int>(0);
    bool m_open = false;
    std::optional<platform::TimerId> m_nextLook;
};

} // namespace glimra::keyboards
