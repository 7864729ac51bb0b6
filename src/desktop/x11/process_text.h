#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace glimra::desktop {

/// How long a window's process may keep us waiting.
inline constexpr std::chrono::milliseconds kProcessPatience{100};

/// The first 4096 bytes of a file that may never answer: a process's command line is its own memory, which it
/// may have put on a file system that hangs. It is read on a thread of its own; none when it cannot be read,
/// or not in time, or when a few such threads hang already. Any thread.
std::optional<std::string> readPatiently(const std::string& file,
                                         std::chrono::milliseconds patience = kProcessPatience);

} // namespace glimra::desktop
