#pragma once

#include "platform/color.h"

#include <string>
#include <variant>

namespace glimra::app {

/// The chosen item of a pop-up, by its place or, of the key menus, by its title.
struct ItemIndex {
    int index = 0;
};
struct ItemTitle {
    std::string title;
};

/// What stands in a text field.
struct EnteredText {
    std::string text;
};

/// The tag of the chosen radio button, or of the clicked button.
struct RadioTag {
    int tag = 0;
};
struct ButtonTag {
    int tag = 0;
};

/// The new colour of a well, which is told by its tag.
struct WellColor {
    int tag = 0;
    platform::Color color;
};

/// A place on the canvas, origin at the bottom left.
struct CanvasPoint {
    double x = 0.0;
    double y = 0.0;
};

/// A window, by its outlet's name.
struct WindowName {
    std::string name;
};

/// What a user's action brings with it: nothing, or one of these. The Boolean is the new state of a check
/// box, or of a menu item that is one.
using ActionArgument = std::variant<std::monostate, bool, ItemIndex, ItemTitle, EnteredText, RadioTag,
                                    ButtonTag, WellColor, CanvasPoint, WindowName>;

} // namespace glimra::app
