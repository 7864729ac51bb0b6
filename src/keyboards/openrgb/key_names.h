#pragma once

#include "keyboards/openrgb/controller_data.h"

#include <vector>

namespace glimra::keyboards::openrgb {

/// An LED that shows a key of ours.
struct LedOfKey {
    std::size_t led = 0;
    /// Position in `lighting::kKeyboardLayout`.
    std::size_t key = 0;

    friend bool operator==(const LedOfKey&, const LedOfKey&) = default;
};

/// The LEDs of a device that can be lit and belong to keys of ours, by their names, or where a keyboard has
/// names of its own, by their places. A key may have several LEDs or none; an LED has one key at most.
std::vector<LedOfKey> ledsOfKeys(const Controller& controller);

/// The device is a keyboard: it says so, or its LEDs are named like keys.
bool isKeyboard(const Controller& controller);

} // namespace glimra::keyboards::openrgb
