#include "keyboards/drivers.h"

#include "keyboards/openrgb/connection.h"
#include "keyboards/sdk/sdk_driver.h"
#include "keyboards/usb/usb_keyboard.h"

#include <algorithm>
#include <array>

namespace glimra::keyboards {

namespace {

DriverTrial trySdk(const DriverOptions& options) {
    SdkDriver driver(options.sdkLibraries);
    if (!driver.LogiLedInit())
        return {.reason = driver.reason()};
    return {.text = "The library " + driver.library().string() + " works."};
}

TakenDriver takeSdk(const DriverOptions& options, Demand) {
    auto driver = std::make_unique<SdkDriver>(options.sdkLibraries);
    if (!driver->LogiLedInit())
        return {.reason = driver->reason()};
    const std::string description = "keyboard of " + driver->library().filename().string();
    return {.description = description, .library = std::move(driver)};
}

std::string lookForUsb(const DriverOptions& options) {
    return whyNoUsbKeyboard(options.hidFolders);
}

DriverTrial tryUsb(const DriverOptions& options) {
    std::string reason = lookForUsb(options);
    if (!reason.empty())
        return {.reason = std::move(reason)};
    return {.text = "The keyboard " + describe(*findHidNodes(options.hidFolders).front().model) +
                    " is there and may be opened."};
}

TakenDriver takeUsb(const DriverOptions& options, Demand demand) {
    std::string reason = demand == Demand::IfPresent ? lookForUsb(options) : std::string{};
    if (!reason.empty())
        return {.reason = std::move(reason)};
    auto device = makeUsbKeyboard(options.hidFolders);
    if (!device)
        return {.reason = "This program was built without the USB keyboards."};
    return {.description = "no keyboard on USB yet", .device = std::move(device)};
}

std::string lookForOpenRgb(const DriverOptions& options) {
    const openrgb::ServerAddress& server = options.openRgb.server;
    if (openrgb::mayListen(server))
        return {};
    return "There is no OpenRGB server on " + server.host + ":" + std::to_string(server.port) + ".";
}

DriverTrial tryOpenRgb(const DriverOptions& options) {
    std::string reason = lookForOpenRgb(options);
    if (!reason.empty())
        return {.reason = std::move(reason)};
    const WakeEvent stop;
    openrgb::OpenRgbDevice device(options.openRgb);
    const OpenResult result = device.open(stop);
    if (!result.found)
        return {.reason = result.text};
    device.close();
    return {.text = result.text};
}

TakenDriver takeOpenRgb(const DriverOptions& options, Demand demand) {
    const bool mayBeAbsent = demand == Demand::Anyway || options.openRgbIsNamed;
    std::string reason = mayBeAbsent ? std::string{} : lookForOpenRgb(options);
    if (!reason.empty())
        return {.reason = std::move(reason)};
    return {.description = "no keyboard from the OpenRGB server yet",
            .device = std::make_unique<openrgb::OpenRgbDevice>(options.openRgb)};
}

DriverTrial tryVirtual(const DriverOptions&) {
    return {.text = "The keyboard in the window always works."};
}

TakenDriver takeVirtual(const DriverOptions&, Demand) {
    return {.description = "keyboard in this window"};
}

constexpr std::array<DriverRow, 4> kDrivers{{
    {"sdk", "Vendor's library", nullptr, &trySdk, &takeSdk},
    {"usb", "Keyboard on USB", &lookForUsb, &tryUsb, &takeUsb},
    {"openrgb", "OpenRGB server", &lookForOpenRgb, &tryOpenRgb, &takeOpenRgb},
    {"virtual", "Keyboard in this window only", nullptr, &tryVirtual, &takeVirtual},
}};

} // namespace

std::span<const DriverRow> driverRows() {
    return kDrivers;
}

const DriverRow* findDriver(std::string_view name) {
    const auto* const row = std::ranges::find(kDrivers, name, &DriverRow::name);
    return row == kDrivers.end() ? nullptr : row;
}

} // namespace glimra::keyboards
