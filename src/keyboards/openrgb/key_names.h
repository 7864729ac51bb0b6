#pragma once

#include "keyboards/openrgb/controller_data.h"

#include <vector>

namespace glimra::keyboards::openrgb {

/// An LED of a device, and the key that it shows.
struct LedOfKey {
    std::size_t led = 0;
    /// Position in `lighting::kKeyboardLayout`, or `kWholeBoard`.
    std::size_t key = 0;

    friend bool operator==(const LedOfKey&, const LedOfKey&) = default;
};

/// The LEDs of a device that show keys of the layout. They are found by the LEDs' names, or by their places
/// on a keyboard whose LEDs have unusual names; those of a keyboard with lights for zones only belong to the
/// whole board. A key may have several LEDs or none; an LED belongs to one key at most.
std::vector<LedOfKey> ledsOfKeys(const Controller& controller);

/// Whether the device is a keyboard: because the server says so, or because its LEDs are named like keys.
bool isKeyboard(const Controller& controller);

} // namespace glimra::keyboards::openrgb
