#pragma once

#include <string>
#include <string_view>

namespace glimra::desktop {

/// Asks the window manager to bring a window to the front: one whose class is `name` or, if there is none,
/// one whose title is. ASCII case is ignored. Returns false when there is no such window or no server. Waits
/// a second or so at most.
bool raiseWindow(const std::string& displayName, std::string_view name);

} // namespace glimra::desktop
