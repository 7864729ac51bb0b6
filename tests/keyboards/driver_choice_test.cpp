#include "keyboards/driver_choice.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace glimra::keyboards {
namespace {

/// Drivers of which the names in `present` have something to light; `tried` tells which were asked.
std::vector<std::string> chosen(std::string_view wanted, const std::vector<std::string_view>& present,
                                std::string& tried) {
    std::vector<DriverRow> rows;
    for (const std::string_view name : {"sdk", "usb", "virtual"})
        rows.push_back({name, [&, name](Demand demand) -> std::string {
                            tried += name;
                            const bool later = demand == Demand::Anyway && name == "usb";
                            return later || std::ranges::count(present, name) > 0 ? "" : "No.";
                        }});
    return describe(chooseDriver(rows, wanted));
}

TEST(DriverChoice, TakesWhatIsWantedElseWhatIsThere) {
    struct Case {
        std::string_view wanted;
        std::vector<std::string_view> present;
        std::vector<std::string> lines;
        std::string tried;
    };
    const std::string noSdk = "Keyboard driver sdk: No.";
    const std::string noUsb = "Keyboard driver usb: No.";
    const std::string noVirtual = "Keyboard driver virtual: No.";
    const std::vector<Case> cases{
        {"auto", {"usb", "virtual"}, {noSdk, "Keyboard driver: usb"}, "sdkusb"},
        {"auto", {"virtual"}, {noSdk, noUsb, "Keyboard driver: virtual"}, "sdkusbvirtual"},
        {"auto", {}, {noSdk, noUsb, noVirtual, "Keyboard driver: none"}, "sdkusbvirtual"},
        {"usb", {"sdk", "virtual"}, {"Keyboard driver: usb"}, "usb"},
        {"sdk", {"usb", "virtual"}, {noSdk, "Keyboard driver: usb"}, "sdkusb"},
        {"virtual", {"sdk", "virtual"}, {"Keyboard driver: virtual"}, "virtual"},
        {"lamp", {"sdk"}, {"Keyboard driver lamp: There is no such driver.", "Keyboard driver: sdk"}, "sdk"},
    };
    for (const Case& one : cases) {
        std::string tried;
        EXPECT_EQ(chosen(one.wanted, one.present, tried), one.lines);
        EXPECT_EQ(tried, one.tried) << one.wanted;
    }
}

} // namespace
} // namespace glimra::keyboards
