#pragma once

#include "keyboards/openrgb/controller_data.h"

#include <string>
#include <vector>

namespace glimra::tests {

using keyboards::openrgb::Rgb;

// Devices as a server knows them, and the bytes in which each version of the protocol tells of them. The
// server's half of the protocol, written for its own sake: it shares only the appending of bytes with the
// client.

struct ServerMode {
    std::string name = "Direct";
    std::uint32_t flags = 1U << 5;
    std::uint32_t colorMode = 1;
    std::uint32_t value = 0;
    std::uint32_t speed = 0;
    std::uint32_t brightness = 0;
    std::vector<Rgb> colors{};
};

struct ServerSegment {
    std::string name;
    std::uint32_t firstLed = 0;
    std::uint32_t ledCount = 0;
};

struct ServerZone {
    std::string name = "Keyboard";
    std::uint32_t ledCount = 0;
    std::uint32_t flags = 0;
    std::uint32_t height = 0;
    std::uint32_t width = 0;
    std::vector<std::uint32_t> cells{};
    std::vector<ServerSegment> segments{};
};

struct ServerDevice {
    std::int32_t type = 5;
    std::string name = "Board";
    std::string serial = "S1";
    std::string location = "HID: /dev/hidraw0";
    std::vector<ServerMode> modes{ServerMode()};
    std::int32_t activeMode = 0;
    std::vector<ServerZone> zones;
    std::vector<std::string> leds;
    std::vector<Rgb> colors{};
    std::vector<std::string> alternateNames;
};

/// A keyboard with a few LEDs of every kind: a strip in front of the keys, keys, a G key and a logo. It has
/// the modes "Rainbow" (active), with two colours of its own, and "Direct".
ServerDevice smallKeyboard(const std::string& name = "Small Board");
/// The 104 keys of a US keyboard, by names and places.
ServerDevice fullKeyboard(const std::string& name = "Full Board");

std::vector<std::uint8_t> encodeMode(const ServerMode& mode, std::uint32_t version);
/// Payload of a controller-data answer.
std::vector<std::uint8_t> encodeDevice(const ServerDevice& device, std::uint32_t version);

} // namespace glimra::tests
