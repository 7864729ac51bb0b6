#pragma once

#include "app/app_delegate.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::app {

/// What a user action brings with it.
enum class ArgumentKind {
    None,
    /// The new state of a check box, or of a menu item that is one.
    State,
    /// The chosen item of a pop-up, by index or, for the key menus, by title.
    Index,
    Title,
    Text,
    /// The tag of the chosen radio button, or of the clicked button.
    RadioTag,
    ButtonTag,
    /// A colour well, by its tag, and its new colour.
    Well,
    /// A place on the canvas, origin at the bottom left.
    Point,
    /// A window outlet, by its name.
    WindowName,
};

/// Values of one action; which of them count is told by its kind.
struct ActionArgument {
    bool state = false;
    /// Index or tag.
    int number = 0;
    std::string text{};
    platform::Color color{};
    double x = 0.0;
    double y = 0.0;
};

/// One thing that a control can send.
struct ActionRow {
    /// With its colon.
    std::string selector;
    ArgumentKind kind;
    /// The controls that send it, by outlet name; empty where none is an outlet.
    std::vector<std::string> outlets;
    std::function<void(AppDelegate&, const ActionArgument&)> perform;
};

/// Every selector of the application. The windows and the replay tool both go by it.
std::span<const ActionRow> actionTable();

/// The row of a selector; none for an unknown one.
const ActionRow* findAction(std::string_view selector);

/// Sends an action the way its control does: the control takes its new state first, and a control that is
/// disabled, or a canvas that is not shown, sends nothing.
void sendAction(AppDelegate& delegate, const ActionRow& action, const ActionArgument& argument);

} // namespace glimra::app
