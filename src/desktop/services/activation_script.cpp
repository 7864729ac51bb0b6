#include "desktop/services/activation_script.h"

namespace glimra::desktop {

namespace {

constexpr std::string_view kBefore = "-e tell application \"";
constexpr std::string_view kAfter = "\" to activate";

} // namespace

std::optional<std::string> activatedApplication(std::string_view argument) {
    if (argument.size() < kBefore.size() + kAfter.size() || !argument.starts_with(kBefore) ||
        !argument.ends_with(kAfter))
        return std::nullopt;
    argument.remove_prefix(kBefore.size());
    argument.remove_suffix(kAfter.size());
    return std::string(argument);
}

} // namespace glimra::desktop
