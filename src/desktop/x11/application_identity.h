#pragma once

#include "platform/workspace.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace glimra::desktop {

/// What a window tells of itself. All texts are bytes as some other program gave them.
struct WindowFacts {
    /// The two parts of WM_CLASS.
    std::string instance;
    std::string windowClass;
    std::string title;
    /// The process that the window claims to belong to; 0 when it claims none.
    std::uint32_t processId = 0;
};

using platform::kGameIdentifier;

/// Whether `name` is a Windows program of the game, in any case of letters.
bool isGameProgram(std::string_view name);

/// The Windows program that a process runs under Wine, without its folder; empty when it is none or cannot be
/// found out.
std::string windowsProgram(std::uint32_t processId);

/// Whether windows of this class may be of any program: then only the process tells which, or the title.
bool isClassOfAnyProgram(std::string_view windowClass);

/// The application behind a window: the game, or else its window class as valid UTF-8. A window without a
/// class has no identifier. Looks at the window's process only where the class does not tell which program it
/// is.
platform::RunningApplication identify(const WindowFacts& window);

} // namespace glimra::desktop
