#pragma once

#include "app/app_delegate.h"
#include "desktop/windows/choice_menu.h"

namespace glimra::desktop {

/// Adds to the menu Keyboard how the keyboard is lit, by the driver's name; what its checked items say is
/// asked for whenever it opens. Main thread.
void furnishKeyboardMenu(QMenu* menu, const Choice& driver, const app::AppDelegate& delegate);

} // namespace glimra::desktop
