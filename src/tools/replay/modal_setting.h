#pragma once

#include "app/app_delegate.h"
#include "tools/replay/script.h"

namespace glimra::tools {

/// Whether the outlet is a text field, for a setting that is a text, or a pop-up, for one that is an index.
bool isPossible(const ModalSetting& setting);
/// Whether there is a window of that name.
bool isWindow(std::string_view outlet);

/// Gives a control in a modal session its new state, as if the user did it: the control sends its action if
/// it has one. Does nothing when the control is disabled. The setting must be possible.
void applySetting(app::AppDelegate& delegate, const ModalSetting& setting);

} // namespace glimra::tools
