#pragma once

#include "desktop/options.h"

namespace glimra::desktop {

/// Installs the add-on as `options.installAddon` says and prints a line for each client of the game. Returns
/// the program's exit status: 0 only if all clients now have the current add-on. Needs an application object,
/// but no display.
int runInstallCommand(const Options& options);

} // namespace glimra::desktop
