#pragma once

#include "platform/workspace.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace glimra::desktop {

/// What a window says about itself. All texts are bytes from another program.
struct WindowFacts {
    /// The two parts of WM_CLASS.
    std::string instance;
    std::string windowClass;
    std::string title;
    /// The process that the window claims to belong to; 0 when it names none.
    std::uint32_t processId = 0;
};

using platform::kGameIdentifier;

/// Whether `name` is one of the game's Windows programs, ignoring case.
bool isGameProgram(std::string_view name);

/// The Windows program that a process runs under Wine, without its folder; empty when there is none or it
/// cannot be determined.
std::string windowsProgram(std::uint32_t processId);

/// Whether windows of this class may belong to any program. Then only the process or the title tells which.
bool isClassOfAnyProgram(std::string_view windowClass);

/// The application that a window belongs to: the game, or its window class as valid UTF-8. A window without a
/// class has no identifier. Reads the window's process only when the class does not identify the program.
platform::RunningApplication identify(const WindowFacts& window);

} // namespace glimra::desktop
