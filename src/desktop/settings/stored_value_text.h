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

/// None for text in none of these forms. Exception: in an array in which at least one element can be read,
/// those that cannot are NaN.
std::optional<platform::StoredValue> storedValueFromText(std::string_view text);

} // namespace glimra::desktop
