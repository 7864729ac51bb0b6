#include "profiles/color_archive.h"

#include "platform/decimal_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>
#include <string_view>

namespace glimra::profiles {

namespace {

constexpr std::string_view kColorSpace = "sRGB";
/// No component needs more than 330 characters.
constexpr std::size_t kLongestArchive = 2048;

} // namespace

platform::Data archiveColor(const platform::Color& color) {
    std::string text(kColorSpace);
    for (const double component : {color.red, color.green, color.blue, 1.0})
        text += " " + platform::decimalText(component);
    return {text.begin(), text.end()};
}

std::optional<platform::Color> unarchiveColor(const platform::Data& data) {
    if (data.size() > kLongestArchive)
        return std::nullopt;
    const std::string text(data.begin(), data.end());
    if (!text.starts_with(kColorSpace))
        return std::nullopt;
    const char* position = text.data() + kColorSpace.size();
    const char* const end = text.data() + text.size();
    std::array<double, 4> components{};
    for (double& component : components) {
        if (position == end || *position != ' ')
            return std::nullopt;
        const auto result = std::from_chars(position + 1, end, component);
        if (result.ec != std::errc{} || !std::isfinite(component))
            return std::nullopt;
        position = result.ptr;
    }
    if (position != end)
        return std::nullopt;
    return platform::Color{components[0], components[1], components[2]};
}

} // namespace glimra::profiles
