#pragma once

#include "keyboards/openrgb/key_names.h"

namespace glimra::keyboards::openrgb {

/// The LEDs of keys by their places alone: the device's largest matrix is laid over a US keyboard where it
/// fits best; in each row the LEDs then follow the keys in their order. Empty when that gives no sense.
std::vector<LedOfKey> ledsByPlace(const Controller& controller);

} // namespace glimra::keyboards::openrgb
