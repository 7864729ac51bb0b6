#pragma once

#include "app/outlets.h"

#include <functional>
#include <optional>

class QObject;

namespace glimra::desktop {

/// The number that the Designer file gives a widget, to tell it from others with the same action; 0 without
/// one.
int tagOf(const QObject& object);

/// Puts a widget back to what its control says; empty where the widget shows nothing but that.
using ShowControl = std::function<void()>;

/// Has a widget show what a control says, from now on; what the user types or chooses reaches the control at
/// once. `outlets` are those of which the control is one. None when the widget is of the wrong kind.
std::optional<ShowControl> attachControl(QObject* object, const app::ControlPointer& control,
                                         app::Outlets& outlets);

} // namespace glimra::desktop
