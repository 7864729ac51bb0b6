#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::keyboards {

/// Stands in for the HID library: its functions are defined in this program, so the lighting library finds
/// them before the real ones. It presents keyboards and keeps what is written to them. One for the process,
/// as the functions have no other way to it. Any thread.
namespace fakeHid {

enum class Access : std::uint8_t { Permitted, Denied };

/// The only keyboard there is from now on. Handles of a keyboard that was there before are dead.
void plug(std::uint16_t product, Access access = Access::Permitted);
void unplug();
/// Takes the keyboard away in the middle of a frame: after that many more reports.
void unplugAfter(std::size_t reports);

/// The reports written since the last time this was asked, in hexadecimal.
std::vector<std::string> takeReports();

} // namespace fakeHid

} // namespace glimra::keyboards
