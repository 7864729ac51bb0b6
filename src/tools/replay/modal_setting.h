#pragma once

#include "app/app_delegate.h"
#include "tools/replay/script.h"

namespace glimra::tools {

/// Whether there is such a text field for a text, or such a pop-up for an index.
bool isPossible(const ModalSetting& setting);
/// Whether there is a window of that name.
bool isWindow(std::string_view outlet);

/// Gives a control in a modal session its new state, as the user does: it sends its action if it has one.
/// Nothing when it is disabled. `setting` is possible.
void applySetting(app::AppDelegate& delegate, const ModalSetting& setting);

} // namespace glimra::tools
