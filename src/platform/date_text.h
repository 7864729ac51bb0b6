#pragma once

#include <chrono>
#include <string>

namespace glimra::platform {

/// A point in time as text: UTC, in whole seconds, as in "2026-11-22 20:47:35 +0000".
std::string dateText(std::chrono::system_clock::time_point moment);

} // namespace glimra::platform
