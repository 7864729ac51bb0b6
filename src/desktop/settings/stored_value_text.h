#pragma once

#include "platform/user_defaults.h"

#include <optional>
#include <string>
#include <string_view>

namespace glimra::desktop {

// Settings as text that a person can read and edit, and that keeps their type and every bit of a number:
//
//   Boolean   true, false
//   integer   -12
//   double    0.1, 5.0, 1e-300, inf, -inf, nan (always with a point, an exponent or a letter, in the
//             shortest form that reads back as the same double)
//   array     [1 2.5 -3]
//   text      text:Battle.net
//   data      ascii:0.5 1 0 (where every byte is printable ASCII), else hex:00ff1e

std::string toText(const platform::StoredValue& value);

/// None for anything that is not exactly of one of these forms; but an array in which some elements can't be
/// read has a double that is no number in the place of each.
std::optional<platform::StoredValue> storedValueFromText(std::string_view text);

} // namespace glimra::desktop
