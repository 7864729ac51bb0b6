#pragma once

#include "keyboards/openrgb/controller_data.h"

namespace glimra::tests {

using keyboards::openrgb::Rgb;

// The server's half of the protocol, written for its own sake: it shares only the names of things and the
// appending of numbers with the client.

/// A keyboard with a few LEDs of every kind: a strip in front of the keys, keys, a G key and a logo. It has
/// the modes "Rainbow" (active), with two colours of its own, and "Direct".
keyboards::openrgb::Controller smallKeyboard(const std::string& name = "Small Board");
/// The 104 keys of a US keyboard, by names and places.
keyboards::openrgb::Controller fullKeyboard(const std::string& name = "Full Board");

std::vector<std::uint8_t> encodeMode(const keyboards::openrgb::Mode& mode, std::uint32_t version);
/// The payload in which a server of this version describes the device.
std::vector<std::uint8_t> encodeDevice(const keyboards::openrgb::Controller& device, std::uint32_t version);

} // namespace glimra::tests
