#pragma once

#include "lighting/led_bitmap.h"

namespace glimra::profiles {

/// The colours of a profile that was never saved, by colour slot.
inline constexpr lighting::ColorSet kFactoryColorSet{{
    {1.0, 0.5, 0.0}, // I
    {0.3, 0.0, 0.0}, // on cooldown
    {1.0, 0.0, 0.5}, // J
    {0.0, 1.0, 0.5}, // K
    {0.0, 1.0, 1.0}, // A
    {1.0, 1.0, 0.0}, // B
    {0.0, 1.0, 0.0}, // C
    {1.0, 0.0, 0.0}, // D
    {0.0, 0.0, 0.5}, // E
    {1.0, 0.0, 1.0}, // F
    {0.0, 0.0, 0.0}, // G
    {0.4, 0.3, 0.4}, // H
    {0.0, 0.5, 1.0}, // L
}};

} // namespace glimra::profiles
