#pragma once

#include "platform/bundle.h"

namespace glimra::app {

/// What the build knows about the program; a packager sets it by CMake options.
platform::Bundle builtBundle();

} // namespace glimra::app
