#pragma once

#include "app/actions.h"
#include "platform/workspace.h"
#include "screenlink/strip_decoder.h"

#include <optional>
#include <string>

namespace glimra::recording {

// Lines of a replay script (docs/replay.md), without line ends. There are functions only for what a recording
// may contain.

/// A setting; none when it could contain text of the user's, or when JSON cannot express it.
std::optional<std::string> settingLine(const std::string& key, const platform::StoredValue& value);
/// The strip in pure colours, since the reader evaluates only which channels are on.
std::string stripLine(const std::optional<screenlink::Cells>& cells);
/// Names no application except the game.
std::string frontLine(const std::optional<platform::RunningApplication>& application);
std::string waitLine(platform::Duration duration);
/// A user's action. The content of a text field is reduced to the number it begins with: the only text field
/// outside modal sessions holds a number.
std::string actionLine(const app::ActionRow& action, const app::ActionArgument& argument);

} // namespace glimra::recording
