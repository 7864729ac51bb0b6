#pragma once

#include <string>
#include <string_view>

namespace glimra::platform {

/// A number in the shortest decimal form that reads back to the same value, with at least one digit after the
/// point ("1.0"). What is no finite number is "inf", "-inf" or "nan".
std::string decimalText(double value);
std::string decimalText(float value);

/// The number that a text begins with, after blanks ("1.5 s" is 1.5); 0 when it begins with none, or with one
/// that no double can hold.
double leadingNumber(std::string_view text);

} // namespace glimra::platform
