#pragma once

#include "lighting/lighting_state.h"
#include "profiles/action_key_map.h"

#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace glimra::app {

/// How somebody sees colours: as most do, or without one kind of cone.
enum class ColorVision { Common, Protan, Deutan, Tritan };

inline constexpr std::array<ColorVision, 4> kColorVisions{ColorVision::Common, ColorVision::Protan,
                                                          ColorVision::Deutan, ColorVision::Tritan};

/// How far two lights lie apart for the eye, in CIE 1976 L*a*b* units: about 2 is just to be seen side by
/// side.
double visibleDifference(const platform::Color& a, const platform::Color& b, ColorVision vision);

/// A colour slot that is hard to tell from the cooldown colour, and for whom first (common sight before the
/// rarer kinds).
struct PaletteWarning {
    int slot = 0;
    ColorVision vision = ColorVision::Common;

    friend bool operator==(const PaletteWarning&, const PaletteWarning&) = default;
};

/// Checks the colours of all keys that can cool down, by ascending slot. `colors` has one for every slot.
std::vector<PaletteWarning> checkPalette(std::span<const lighting::Color> colors, const lighting::KeyMap& map,
                                         const profiles::ActionKeyMap& actionKeys);

/// The name of a kind of sight as it goes on in "hard to tell apart ...".
std::string_view describe(ColorVision vision);

} // namespace glimra::app
