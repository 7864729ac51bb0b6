#pragma once

#include "desktop/options.h"
#include "keyboards/chosen_keyboard.h"
#include "platform/stored_values.h"

namespace glimra::desktop {

/// How the keyboard is to be lit, by the command line and, where that says nothing, by the settings.
keyboards::ChosenKeyboard::Options keyboardOptions(const Options& options,
                                                   const platform::SettingsReader& settings);

} // namespace glimra::desktop
