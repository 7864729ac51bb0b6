#pragma once

#include "app/launcher.h"
#include "desktop/doctor/doctor.h"
#include "desktop/doctor/finding.h"
#include "desktop/settings/settings_copy.h"
#include "platform/user_defaults.h"

namespace glimra::desktop::doctor {

// Each function checks one part of the machine in the way the application would use it, changes nothing, and
// takes a few seconds at most. Main thread; needs an application object.

/// Checks the capture, the main display, and whether the strip is visible.
Findings checkScreen(const Subject& subject);
/// Checks every driver, the permission for devices, and which driver would be used.
Findings checkKeyboards(const keyboards::ChosenKeyboard::Options& wanted);
/// Checks the buses, the login manager, speech and sound.
Findings checkServices();
/// Checks the add-on in each client of the game that is found.
Findings checkAddon(const platform::UserDefaults& settings);
Findings checkSettings(const SettingsCopy& settings);

// The same words for a program that runs.

/// What there is to light now, by each driver whose keyboard may come and go, and whether it may be lit.
/// Opens nothing.
Findings lookAtKeyboards(const keyboards::DriverOptions& options);
Finding stripFinding(bool isSeen, bool isCalibrated);
/// The add-on, where the game may be near these applications. Any thread.
Findings checkAddon(const app::LauncherState& launched);

} // namespace glimra::desktop::doctor
