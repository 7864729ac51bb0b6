#pragma once

#include "desktop/options.h"
#include "keyboards/chosen_keyboard.h"
#include "platform/stored_values.h"

namespace glimra::desktop {

/// How to light the keyboard: as the command line says or, where it says nothing, the settings.
keyboards::ChosenKeyboard::Options keyboardOptions(const Options& options,
                                                   const platform::SettingsReader& settings);

} // namespace glimra::desktop
