#pragma once

#include "platform/controls.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace glimra::app {

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

    // Action-key setter: bar 1, 5 and 6, each with slots 1 to 12.
    platform::Window actionKeySetterWindow;
    std::array<platform::PopUp, 12> menu1;
    std::array<platform::PopUp, 12> menu5;
    std::array<platform::PopUp, 12> menu6;

    /// The menu item that toggles debug mode. No window shows it as an outlet.
    platform::MenuItem debugMenuItem{"Debug"};
};

using ControlPointer =
    std::variant<platform::Window*, platform::TextView*, platform::Picture*, platform::CanvasView*,
                 platform::RadioGroup*, platform::ColorWell*, platform::PopUp*, platform::TextField*,
                 platform::Label*, platform::CheckBox*, platform::Button*, platform::MenuItem*>;

struct NamedOutlet {
    std::string name;
    ControlPointer control;
};

/// All outlets with their names ("menu101" for the first entry of `menu1`), in the order in which they stand
/// above, without `debugMenuItem`.
std::vector<NamedOutlet> namedOutlets(Outlets& outlets);

/// The outlet of a name; none for an unknown one.
std::optional<ControlPointer> findOutlet(Outlets& outlets, std::string_view name);

} // namespace glimra::app
