#include "app/outlets.h"

#include <algorithm>

namespace glimra::app {

namespace {

void appendMenus(std::vector<NamedOutlet>& named, int bar, std::array<platform::PopUp, 12>& menus) {
    int number = bar * 100;
    for (platform::PopUp& menu : menus)
        named.push_back({"menu" + std::to_string(++number), &menu});
}

} // namespace

std::vector<NamedOutlet> namedOutlets(Outlets& outlets) {
// The outlet's name is written once, in its declaration, and once here.
#define GLIMRA_OUTLET(outlet) NamedOutlet{#outlet, &outlets.outlet}
    std::vector<NamedOutlet> named{
        GLIMRA_OUTLET(mainWindow),
        GLIMRA_OUTLET(myTextScroll),
        GLIMRA_OUTLET(imageView),
        GLIMRA_OUTLET(colorProgrammerWindow),
        GLIMRA_OUTLET(keyboardCanvas),
        GLIMRA_OUTLET(colorButtonGroup),
        GLIMRA_OUTLET(keyCoolColor),
        GLIMRA_OUTLET(colorA),
        GLIMRA_OUTLET(colorB),
        GLIMRA_OUTLET(colorC),
        GLIMRA_OUTLET(colorD),
        GLIMRA_OUTLET(colorE),
        GLIMRA_OUTLET(colorF),
        GLIMRA_OUTLET(colorG),
        GLIMRA_OUTLET(colorH),
        GLIMRA_OUTLET(colorI),
        GLIMRA_OUTLET(colorJ),
        GLIMRA_OUTLET(colorK),
        GLIMRA_OUTLET(colorL),
        GLIMRA_OUTLET(currentProfilePopup),
        GLIMRA_OUTLET(profileChangeAlert),
        GLIMRA_OUTLET(blinkTimeTextbox),
        GLIMRA_OUTLET(actionBarEffectCheckbox),
        GLIMRA_OUTLET(cooldownPreviewBtn),
        GLIMRA_OUTLET(controlAllLightsCheckbox),
        GLIMRA_OUTLET(combatChatAlertCheckbox),
        GLIMRA_OUTLET(autoChatProfileCheckbox),
        GLIMRA_OUTLET(singleColorModeBtn),
        GLIMRA_OUTLET(copyProfileDialog),
        GLIMRA_OUTLET(fromProfileMenu),
        GLIMRA_OUTLET(toProfileMenu),
        GLIMRA_OUTLET(copyProfileCopyBtn),
        GLIMRA_OUTLET(launchOptionWindow),
        GLIMRA_OUTLET(WoWAppNameField),
        GLIMRA_OUTLET(WoWClassicAppNameField),
        GLIMRA_OUTLET(BNAppNameField),
        GLIMRA_OUTLET(autorunNoneMI),
        GLIMRA_OUTLET(autorunBNetMI),
        GLIMRA_OUTLET(autorunWowMI),
        GLIMRA_OUTLET(autorunClassicMI),
        GLIMRA_OUTLET(aboutWindow),
        GLIMRA_OUTLET(aboutVersionLabel),
        GLIMRA_OUTLET(aboutCopyLabel),
        GLIMRA_OUTLET(aboutLinkLabel),
        GLIMRA_OUTLET(helpWindow),
        GLIMRA_OUTLET(helpTextView),
        GLIMRA_OUTLET(actionKeySetterWindow),
    };
#undef GLIMRA_OUTLET
    appendMenus(named, 1, outlets.menu1);
    appendMenus(named, 5, outlets.menu5);
    appendMenus(named, 6, outlets.menu6);
    return named;
}

std::optional<ControlPointer> findOutlet(Outlets& outlets, std::string_view name) {
    const std::vector<NamedOutlet> named = namedOutlets(outlets);
    const auto found = std::ranges::find(named, name, &NamedOutlet::name);
    if (found == named.end())
        return std::nullopt;
    return found->control;
}

} // namespace glimra::app
