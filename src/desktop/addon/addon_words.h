#pragma once

#include "desktop/addon/addon_folder.h"

#include <string>

namespace glimra::desktop::addon {

// Texts for the player, as parts of a sentence about the add-on.

/// "missing"; "0.0.9, older than 0.1.0".
std::string describe(const InstalledAddon& installed, const ShippedAddon& shipped);
/// "installed 0.1.0"; "could not be written: No space left on device".
std::string describe(const Installation& installation, const ShippedAddon& shipped);

} // namespace glimra::desktop::addon
