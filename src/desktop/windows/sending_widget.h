#pragma once

#include "app/action_argument.h"

#include <array>
#include <functional>
#include <string_view>

class QObject;

namespace glimra::desktop {

/// The dynamic properties by which a designer says what a widget sends: when it is operated; besides, when
/// the canvas is dragged over, and when a colour well is opened or gives up what was chosen.
inline constexpr std::array kActionProperties{"action", "dragAction", "openAction", "restoreAction"};

/// Gets what the user did with a widget, as the argument of its action.
using Send = std::function<void(const app::ActionArgument&)>;

/// Has a widget send, from now on, what the user does with it, at the occasion that `property` names. False
/// when a widget of its kind never sends an argument like `takes` there.
bool connectWidget(QObject* object, std::string_view property, const app::ActionArgument& takes,
                   const Send& send);

} // namespace glimra::desktop
