#pragma once

#include "desktop/options.h"

namespace glimra::desktop {

/// Installs the add-on as `options.installAddon` says, and prints a line for each client of the game. Returns
/// the program's exit status: 0 only if all of them have the current add-on now. Needs an application object,
/// but no display.
int runInstallCommand(const Options& options);

} // namespace glimra::desktop
