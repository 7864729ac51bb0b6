#pragma once

#include "app/action_argument.h"
#include "app/app_delegate.h"

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::app {

/// What an action leads to: an operation, by its object and its method, and the constants that it is given.
struct ActionCall {
    /// An empty argument of the kind that the action takes.
    ActionArgument takes;
    std::function<void(Operations&, const ActionArgument&)> perform;
};

/// One thing that a control can send.
struct ActionRow {
    /// With its colon.
    std::string selector;
    /// The controls that send it, by outlet name; empty where none is an outlet.
    std::vector<std::string> outlets;
    ActionCall call;
};

/// Every selector of the application. The windows and the replay tool both go by it.
std::span<const ActionRow> actionTable();

/// The row of a selector; none for an unknown one.
const ActionRow* findAction(std::string_view selector);

/// Sends an action the way its control does: the control takes its new state first, and a control that is
/// disabled, or a canvas that is not shown, sends nothing. `argument` is of the kind that the action takes;
/// another one throws `std::bad_variant_access`.
void sendAction(AppDelegate& delegate, const ActionRow& action, const ActionArgument& argument);

} // namespace glimra::app
