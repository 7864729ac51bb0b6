#pragma once

#include <chrono>
#include <string>

namespace glimra::platform {

/// A moment of the calendar in UTC, in whole seconds, as "2026-11-22 20:47:35 +0000".
std::string dateText(std::chrono::system_clock::time_point moment);

} // namespace glimra::platform
