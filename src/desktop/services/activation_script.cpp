#include "desktop/services/activation_script.h"

namespace glimra::desktop {

namespace {

constexpr std::string_view kBefore = "-e tell application \"";
constexpr std::string_view kAfter = "\" to activate";

/// None when the text is not the content of a single quoted string.
std::optional<std::string> unescaped(std::string_view text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"' || (text[i] == '\\' && ++i == text.size()))
            return std::nullopt;
        plain += text[i];
    }
    return plain;
}

} // namespace

std::optional<std::string> activatedApplication(std::string_view argument) {
    if (argument.size() < kBefore.size() + kAfter.size() || !argument.starts_with(kBefore) ||
        !argument.ends_with(kAfter))
        return std::nullopt;
    argument.remove_prefix(kBefore.size());
    argument.remove_suffix(kAfter.size());
    return unescaped(argument);
}

} // namespace glimra::desktop
