#pragma once

#include "keyboards/device/keyboard_device.h"
#include "keyboards/openrgb/openrgb_device.h"
#include "keyboards/usb/hid_nodes.h"
#include "platform/led_driver.h"

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::keyboards {

/// The name of the choice that leaves it to the program: the first driver that has something to light.
inline constexpr std::string_view kAutomaticDriver = "auto";

/// Where the drivers find what they light.
struct DriverOptions {
    /// The files that may be the vendor's library.
    std::vector<std::filesystem::path> sdkLibraries;
    openrgb::Options openRgb;
    /// The user has named the OpenRGB server. It is then used without looking whether it is there.
    bool openRgbIsNamed = false;
    HidFolders hidFolders;
};

enum class Demand {
    /// Take the driver only when there is something to light now.
    IfPresent,
    /// Take the driver also when what it lights may come later.
    Anyway
};

/// What is to light up by a driver that was taken. Without a library and without a device it is the drawn
/// keyboard alone.
struct TakenDriver {
    /// Why the driver cannot be taken, as a sentence for the log; empty when it was taken.
    std::string reason{};
    /// What lights up, in plain words: "keyboard in this window".
    std::string description{};
    /// For a keyboard with effects of its own: gets every call itself. It has been started.
    std::unique_ptr<platform::LedDriver> library{};
    /// For a keyboard without effects of its own: a writer keeps it showing what the drawn keyboard shows.
    std::unique_ptr<KeyboardDevice> device{};
};

/// What came of trying a driver: when it works `reason` is empty and `text` says what it lights, otherwise
/// `reason` says why it lights nothing. Both are sentences.
struct DriverTrial {
    std::string reason{};
    std::string text{};
};

/// One of the ways to light a keyboard.
struct DriverRow {
    /// On the command line, in the settings and in the log.
    std::string_view name;
    /// For the user, in plain words.
    std::string_view title;
    /// Looks whether there is something to light, opens nothing and takes no more than a few milliseconds.
    /// Says why there is nothing, as a sentence; empty when there is something. Null for a driver whose
    /// keyboard cannot come while the program runs.
    std::string (*look)(const DriverOptions& options);
    /// Tries whether the driver works, for a few seconds at most, and leaves everything as it was.
    DriverTrial (*tryIt)(const DriverOptions& options);
    TakenDriver (*take)(const DriverOptions& options, Demand demand);
};

/// All drivers, in the order in which the automatic choice tries them. The last one always works.
std::span<const DriverRow> driverRows();

/// The driver of that name; null when there is none.
const DriverRow* findDriver(std::string_view name);

} // namespace glimra::keyboards
