#include "platform/decimal_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace glimra::platform {

namespace {

template <class Real>
std::string shortest(Real value) {
    if (!std::isfinite(value))
        return std::isnan(value) ? "nan" : value < 0 ? "-inf" : "inf";
    // At most 309 digits before the point, or 324 zeros and 17 digits after it.
    std::array<char, 512> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed).ptr;
    std::string text(buffer.data(), end);
    if (text.find('.') == std::string::npos)
        text += ".0";
    return text;
}

} // namespace

std::string decimalText(double value) {
    return shortest(value);
}

std::string decimalText(float value) {
    return shortest(value);
}

double leadingNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\r\f\v"), text.size()));
    if (text.starts_with('+') && !text.starts_with("+-"))
        text.remove_prefix(1);
    // Stays 0 when no number is read.
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    // from_chars also reads "inf" and "nan", which are no numbers to a user.
    return std::isfinite(value) ? value : 0.0;
}

} // namespace glimra::platform
