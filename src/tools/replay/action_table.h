#pragma once

#include "app/app_delegate.h"

#include <string>
#include <string_view>
#include <variant>

namespace glimra::tools {

/// What a script says about a user action besides its selector.
enum class ArgumentKind {
    None,
    /// The state of a check box after the click.
    OnOff,
    /// Of a radio group's button.
    Tag,
    /// Of a colour well, with its new colour.
    TaggedColor,
    /// Of a pop-up's item, 0-based.
    Index,
    /// Of a pop-up's item.
    Title,
    /// Of a text field.
    Text,
};

struct TaggedColor {
    int tag;
    platform::Color color;
};

using ActionArgument = std::variant<std::monostate, bool, int, TaggedColor, std::string>;

/// A user action that the application has.
struct Action {
    std::string_view selector;
    ArgumentKind argument;
    /// Outlet name of the control that sends it; empty for a control that is no outlet. A colour well is
    /// found by its tag instead.
    std::string_view sender;
    void (*send)(app::AppDelegate& delegate, const ActionArgument& argument);
};

/// The action with this selector; none when the application has no such action.
const Action* findAction(std::string_view selector);

/// Does what the user does: gives the control its new state and sends the action, unless the control is
/// disabled.
void performAction(app::AppDelegate& delegate, const Action& action, const ActionArgument& argument);

/// The same for a control that sets something in a modal session, under its outlet name: a text field its
/// text, a pop-up its index. Sends the control's action if it has one.
void performSetting(app::AppDelegate& delegate, std::string_view outlet, const ActionArgument& argument);

/// Whether the outlet of that name takes such an argument in a modal session: a text field a text, a pop-up
/// an index.
bool takesSetting(std::string_view outlet, const ActionArgument& argument);

} // namespace glimra::tools
