#pragma once

#include "platform/controls.h"

#include <array>
#include <span>
#include <string_view>
#include <variant>

namespace glimra::app {

/// The pop-ups of one bar, slots 1 to 12.
using KeyMenus = std::array<platform::PopUp, 12>;

/// Every window and control that the application knows, under the name by which the interface knows it too.
struct Outlets {
    // Main window and log.
    platform::Window mainWindow;
    platform::TextView myTextScroll;
    /// The picture of the main window: the keyboard as it is lit.
    platform::Picture imageView;

    // Colour programmer.
    platform::Window colorProgrammerWindow;
    platform::CanvasView keyboardCanvas;
    platform::RadioGroup colorButtonGroup;
    platform::ColorWell keyCoolColor{0};
    platform::ColorWell colorA{1};
    platform::ColorWell colorB{2};
    platform::ColorWell colorC{3};
    platform::ColorWell colorD{4};
    platform::ColorWell colorE{5};
    platform::ColorWell colorF{6};
    platform::ColorWell colorG{7};
    platform::ColorWell colorH{8};
    platform::ColorWell colorI{9};
    platform::ColorWell colorJ{10};
    platform::ColorWell colorK{11};
    platform::ColorWell colorL{12};
    platform::PopUp currentProfilePopup;
    platform::Window profileChangeAlert;
    platform::TextField blinkTimeTextbox;
    platform::CheckBox actionBarEffectCheckbox;
    platform::Button cooldownPreviewBtn;
    platform::CheckBox controlAllLightsCheckbox;
    platform::CheckBox combatChatAlertCheckbox;
    platform::CheckBox autoChatProfileCheckbox;
    platform::CheckBox singleColorModeBtn;
    platform::Window copyProfileDialog;
    platform::PopUp fromProfileMenu;
    platform::PopUp toProfileMenu;
    platform::Button copyProfileCopyBtn;

    // Launcher, about and help.
    platform::Window launchOptionWindow;
    platform::TextField WoWAppNameField;
    platform::TextField WoWClassicAppNameField;
    platform::TextField BNAppNameField;
    platform::MenuItem autorunNoneMI{"None"};
    platform::MenuItem autorunBNetMI{"Battle.net"};
    platform::MenuItem autorunWowMI{"World of Warcraft"};
    platform::MenuItem autorunClassicMI{"World of Warcraft Classic"};
    platform::Window aboutWindow;
    platform::Label aboutVersionLabel;
    platform::Label aboutCopyLabel;
    platform::Label aboutLinkLabel;
    platform::Window helpWindow;
    platform::Label helpTextView;

    // Action-key setter: bar 1, 5 and 6.
    platform::Window actionKeySetterWindow;
    KeyMenus menu1;
    KeyMenus menu5;
    KeyMenus menu6;

    /// The menu item that toggles debug mode. No window shows it as an outlet.
    platform::MenuItem debugMenuItem{"Debug"};
};

using ControlPointer =
    std::variant<platform::Window*, platform::TextView*, platform::Picture*, platform::CanvasView*,
                 platform::RadioGroup*, platform::ColorWell*, platform::PopUp*, platform::TextField*,
                 platform::Label*, platform::CheckBox*, platform::Button*, platform::MenuItem*>;

/// One pop-up of a bar.
struct KeyMenu {
    KeyMenus Outlets::*bar;
    std::size_t index;
};

/// Where an outlet is; the same in all `Outlets`.
using OutletMember =
    std::variant<platform::Window Outlets::*, platform::TextView Outlets::*, platform::Picture Outlets::*,
                 platform::CanvasView Outlets::*, platform::RadioGroup Outlets::*,
                 platform::ColorWell Outlets::*, platform::PopUp Outlets::*, platform::TextField Outlets::*,
                 platform::Label Outlets::*, platform::CheckBox Outlets::*, platform::Button Outlets::*,
                 platform::MenuItem Outlets::*, KeyMenu>;

struct NamedOutlet {
    std::string_view name;
    OutletMember member;

    ControlPointer in(Outlets& outlets) const;
    /// The outlet as a window; null where it is something else.
    platform::Window* windowIn(Outlets& outlets) const;
};

/// All outlets with their names ("menu101" for the first entry of `menu1`), in the order in which they stand
/// above, without `debugMenuItem`.
std::span<const NamedOutlet> namedOutlets();

/// The outlet of a name; none for an unknown one.
const NamedOutlet* findOutlet(std::string_view name);

} // namespace glimra::app
