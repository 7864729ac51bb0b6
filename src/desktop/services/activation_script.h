#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace glimra::desktop {

/// The application's name in an argument of the scripting command that activates it
/// (-e tell application "NAME" to activate), without its escaping; none when the argument says anything else.
std::optional<std::string> activatedApplication(std::string_view argument);

} // namespace glimra::desktop
