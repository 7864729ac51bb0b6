#pragma once

#include "platform/color.h"

#include <QString>

namespace glimra::desktop {

/// What people call a colour: "cyan", "dark red". Of some forty names the one whose colour looks most alike.
QString colorName(const platform::Color& color);

} // namespace glimra::desktop
