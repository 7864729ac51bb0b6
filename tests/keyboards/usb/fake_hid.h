#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace glimra::tests {

/// Stands in for the HID library: its functions are defined in this program, so the lighting library finds
/// them before the real ones. It presents one keyboard and keeps what is written to it. One thread.
struct FakeHid {
    /// Of the keyboard that is plugged in; 0 for none.
    std::uint16_t product = 0;
    /// So many more reports are taken, then the keyboard is gone.
    std::size_t reportsLeft = 0;
    /// In hexadecimal.
    std::vector<std::string> reports;
    int timesPlugged = 0;

    /// Handles of a keyboard that was there before are dead.
    void plug(std::uint16_t newProduct) {
        *this = {newProduct, std::numeric_limits<std::size_t>::max(), {}, timesPlugged + 1};
    }
};

inline FakeHid fakeHid;

} // namespace glimra::tests
