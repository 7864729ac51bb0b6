#pragma once

#include <string>
#include <string_view>

namespace glimra::platform {

/// A number in the shortest decimal form that reads back to the same value, with at least one digit after the
/// point ("1.0"). Other values give "inf", "-inf" or "nan".
std::string decimalText(double value);
std::string decimalText(float value);

/// The number at the beginning of a text, after white space ("1.5 s" gives 1.5); 0 when there is none, or
/// when a double cannot hold it.
double leadingNumber(std::string_view text);

} // namespace glimra::platform
