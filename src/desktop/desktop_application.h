#pragma once

#include "desktop/options.h"

namespace glimra::desktop {

/// Runs the application on the desktop, from launch to quit. Needs a QApplication; main thread. Throws
/// std::system_error when a file that the options name cannot be used. Returns the program's exit status.
int runDesktopApplication(const Options& options);

} // namespace glimra::desktop
