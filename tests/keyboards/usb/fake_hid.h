#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// Stands in for the HID library: its functions are defined in this program, so the lighting library finds
/// them before the real ones. It presents one keyboard and keeps what is written to it. One thread.
namespace glimra::tests::fakeHid {

/// The only keyboard there is from now on. Handles of a keyboard that was there before are dead.
void plug(std::uint16_t product);
void unplug();
/// Takes the keyboard away in the middle of a frame: after that many more reports.
void unplugAfter(std::size_t reports);
/// The reports written since the last time this was asked, in hexadecimal.
std::vector<std::string> takeReports();

} // namespace glimra::tests::fakeHid
