#pragma once

#include "app/actions.h"
#include "platform/workspace.h"
#include "screenlink/strip_decoder.h"

#include <optional>
#include <string>

namespace glimra::recording {

// Lines of a replay script (docs/replay.md), without their ends. Only what a recording may hold can be
// written.

/// A setting; none for one that may hold words of the user's.
std::optional<std::string> settingLine(const std::string& key, const platform::StoredValue& value);
/// The strip in pure colours: which channels are on is all that is read of it.
std::string stripLine(const std::optional<screenlink::Cells>& cells);
/// Applications but the game stay nameless.
std::string frontLine(const std::optional<platform::RunningApplication>& application);
std::string waitLine(platform::Duration duration);
/// What a user did. The words of a text field become the number that they begin with: the only such field
/// outside a modal session holds a number.
std::string actionLine(const app::ActionRow& action, const app::ActionArgument& argument);

} // namespace glimra::recording
