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
    HidFolders hidFolders;
};

/// A keyboard with effects of its own, which has been started; none when `reason` says, as a sentence, why.
struct StartedLibrary {
    std::string reason{};
    /// What lights up, in plain words.
    std::string description{};
    std::unique_ptr<platform::LedDriver> driver{};
};

/// One of the ways to light a keyboard.
struct DriverRow {
    /// On the command line, in the settings and in the log.
    std::string_view name;
    /// For the user, in plain words.
    std::string_view title;
    /// What lights up as long as this driver has found nothing.
    std::string_view description;
    /// Says what the driver would light, and changes nothing. Takes a few seconds at most. Main thread.
    OpenResult (*look)(const DriverOptions& options);
    /// `look` only reads some files, and returns at once.
    bool looksAtFiles = false;
    /// Of a driver of keyboards with effects of their own, which must be there when it starts.
    StartedLibrary (*start)(const DriverOptions& options) = nullptr;
    /// Of a driver of keyboards without effects, which may come later; returns null when the program was
    /// built without it.
    std::unique_ptr<KeyboardDevice> (*makeDevice)(const DriverOptions& options) = nullptr;
};

/// All drivers. The last one always works.
std::span<const DriverRow> driverRows();

/// The driver of that name; null when there is none.
const DriverRow* findDriver(std::string_view name);

/// The drivers among which a choice, a driver's name or `kAutomaticDriver`, leaves the decision: the first of
/// them that finds something to light is taken. One that was named and finds keyboards which come later is
/// followed by the last driver only.
std::vector<const DriverRow*> candidates(std::string_view choice);

} // namespace glimra::keyboards
