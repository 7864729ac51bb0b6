#include "platform/decimal_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace glimra::platform {

namespace {

template <class Real>
std::string shortest(Real value) {
    if (!std::isfinite(value))
        return std::isnan(value) ? "nan" : value < 0 ? "-inf" : "inf";
    // 309 digits before the point at most, or 324 zeros behind it and 17 digits.
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
    const std::size_t start = text.find_first_not_of(" \t\n\r\f\v");
    if (start == std::string_view::npos)
        return 0.0;
    text.remove_prefix(start);
    bool negative = false;
    if (text.front() == '+' || text.front() == '-') {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    // Words that mean a number to the library ("inf", "nan") mean none to a user.
    if (text.empty() || text.find_first_of("0123456789.") != 0)
        return 0.0;
    double value = 0.0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        const std::string_view number(text.data(), static_cast<std::size_t>(result.ptr - text.data()));
        const bool tiny = number.find("e-") != std::string_view::npos ||
                          number.find("E-") != std::string_view::npos || number.front() == '0' ||
                          number.front() == '.';
        value = tiny ? 0.0 : std::numeric_limits<double>::max();
    }
    return negative ? -value : value;
}

} // namespace glimra::platform
