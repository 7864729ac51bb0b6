#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace glimra::platform {

inline constexpr std::string_view kHexDigits = "0123456789abcdef";

/// Two lower-case digits for each byte.
inline std::string hexadecimal(std::span<const std::uint8_t> bytes) {
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        text += kHexDigits[byte >> 4U];
        text += kHexDigits[byte & 0xFU];
    }
    return text;
}

} // namespace glimra::platform
