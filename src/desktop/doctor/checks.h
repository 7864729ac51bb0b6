#pragma once

#include "desktop/doctor/doctor.h"
#include "desktop/doctor/finding.h"
#include "desktop/settings/settings_copy.h"
#include "platform/user_defaults.h"

namespace glimra::desktop::doctor {

// Each looks at one part of the machine, as the application would use it, and leaves it as it was. Each takes
// a few seconds at most. Main thread, with an application object.

/// Capture, main display, and whether the strip shows.
Findings checkScreen(const Subject& subject);
/// Every driver, the permission for devices, and which driver would be taken.
Findings checkKeyboards(const keyboards::ChosenKeyboard::Options& wanted);
/// Buses, login manager, speech and sound.
Findings checkServices();
/// The add-on, in each client of the game that is found.
Findings checkAddon(const platform::UserDefaults& settings);
Findings checkSettings(const SettingsCopy& settings);

} // namespace glimra::desktop::doctor
