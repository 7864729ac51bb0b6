#include "keyboards/drivers.h"

#include "keyboards/sdk/sdk_driver.h"
#include "keyboards/usb/usb_keyboard.h"

#include <algorithm>
#include <array>

namespace glimra::keyboards {

namespace {

OpenResult lookForSdk(const DriverOptions& options) {
    return SdkDriver(options.sdkLibraries).look();
}

StartedLibrary startSdk(const DriverOptions& options) {
    auto driver = std::make_unique<SdkDriver>(options.sdkLibraries);
    if (!driver->LogiLedInit())
        return {.reason = driver->reason()};
    const std::string description = "keyboard of " + driver->library().filename().string();
    return {.description = description, .driver = std::move(driver)};
}

std::unique_ptr<KeyboardDevice> makeUsb(const DriverOptions& options) {
    return makeUsbKeyboard(options.hidFolders);
}

std::unique_ptr<KeyboardDevice> makeOpenRgb(const DriverOptions& options) {
    return std::make_unique<openrgb::OpenRgbDevice>(options.openRgb);
}

template <auto make>
OpenResult lookBy(const DriverOptions& options) {
    const WakeEvent stop;
    const std::unique_ptr<KeyboardDevice> device = make(options);
    return device ? device->look(stop) : OpenResult{.text = "This program was built without this driver."};
}

OpenResult lookForVirtual(const DriverOptions&) {
    return {.found = true, .text = "The keyboard in the window always works."};
}

constexpr std::array<DriverRow, 4> kDrivers{{
    {.name = "sdk",
     .title = "Vendor's library",
     .description = "",
     .look = &lookForSdk,
     .looksAtFiles = true,
     .start = &startSdk},
    {.name = "usb",
     .title = "Keyboard on USB",
     .description = "no keyboard on USB yet",
     .look = &lookBy<&makeUsb>,
     .looksAtFiles = true,
     .makeDevice = &makeUsb},
    {.name = "openrgb",
     .title = "OpenRGB server",
     .description = "no keyboard from the OpenRGB server yet",
     .look = &lookBy<&makeOpenRgb>,
     .makeDevice = &makeOpenRgb},
    {.name = "virtual",
     .title = "Keyboard in this window only",
     .description = "keyboard in this window",
     .look = &lookForVirtual},
}};

} // namespace

std::span<const DriverRow> driverRows() {
    return kDrivers;
}

const DriverRow* findDriver(std::string_view name) {
    const auto* const row = std::ranges::find(kDrivers, name, &DriverRow::name);
    return row == kDrivers.end() ? nullptr : row;
}

std::vector<const DriverRow*> candidates(std::string_view choice) {
    const DriverRow* const named = findDriver(choice);
    std::vector<const DriverRow*> rows;
    for (const DriverRow& row : kDrivers)
        if (named == nullptr || named->start != nullptr || &row == named || &row == &kDrivers.back())
            rows.push_back(&row);
    return rows;
}

} // namespace glimra::keyboards
