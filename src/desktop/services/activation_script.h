#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace glimra::desktop {

/// The application's name, as it stands there, from the script argument that activates an application (-e
/// tell application "NAME" to activate); none when the argument is anything else.
std::optional<std::string> activatedApplication(std::string_view argument);

} // namespace glimra::desktop
