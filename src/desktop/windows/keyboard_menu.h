#pragma once

#include "app/app_delegate.h"
#include "desktop/windows/choice_menu.h"

namespace glimra::desktop {

/// Adds to the menu Keyboard how the keyboard is lit, by the driver's name; and whether effects end when the
/// game is gone is asked for whenever it opens. Main thread.
void furnishKeyboardMenu(QMenu* menu, const Choice& driver, const app::AppDelegate& delegate);

} // namespace glimra::desktop
