#include "app/actions.h"

#include "app/color_wells.h"

#include <algorithm>

namespace glimra::app {

namespace {

using Argument = ActionArgument;

template <class ControlType>
ControlType* outletOfType(AppDelegate& delegate, std::string_view name) {
    for (const NamedOutlet& outlet : namedOutlets(delegate.outlets()))
        if (outlet.name == name)
            if (auto* const* control = std::get_if<ControlType*>(&outlet.control))
                return *control;
    return nullptr;
}

ActionRow plain(std::string selector, void (AppDelegate::*method)(), std::string outlet = {}) {
    return {std::move(selector), ArgumentKind::None, std::move(outlet),
            [method](AppDelegate& delegate, const Argument&) { (delegate.*method)(); }};
}

ActionRow withControl(std::string selector, ArgumentKind kind, std::string outlet,
                      void (AppDelegate::*method)()) {
    return {std::move(selector), kind, std::move(outlet),
            [method](AppDelegate& delegate, const Argument&) { (delegate.*method)(); }};
}

std::vector<ActionRow> makeTable() {
    using D = AppDelegate;
    std::vector<ActionRow> table{
        plain("calibrateButton:", &D::calibrateButton),
        plain("calibrateMI:", &D::calibrateMI),
        plain("debugMenuItem:", &D::debugMenuItem),
        plain("resetLightsMI:", &D::resetLightsMI),
        plain("resetClicked:", &D::resetClicked),
        plain("testLightsMI:", &D::testLightsMI),
        plain("testButton:", &D::testButton),

        plain("setColorsMI:", &D::setColorsMI),
        plain("setColorsBtn:", &D::setColorsBtn),
        withControl("controlAllLightsCheck:", ArgumentKind::State, "controlAllLightsCheckbox",
                    &D::controlAllLightsCheck),
        withControl("singleColorModeCheck:", ArgumentKind::State, "singleColorModeBtn",
                    &D::singleColorModeCheck),
        withControl("autoToggleProfileClicked:", ArgumentKind::State, "autoChatProfileCheckbox",
                    &D::autoToggleProfileClicked),
        withControl("combatChatWarningClicked:", ArgumentKind::State, "combatChatAlertCheckbox",
                    &D::combatChatWarningClicked),
        withControl("cooldownCheck:", ArgumentKind::State, "actionBarEffectCheckbox", &D::cooldownCheck),
        plain("revealCooldownColors:", &D::revealCooldownColors, "cooldownPreviewBtn"),
        withControl("blinkTimeChanged:", ArgumentKind::Text, "blinkTimeTextbox", &D::blinkTimeChanged),
        withControl("paintingColorPicker:", ArgumentKind::RadioTag, "colorButtonGroup",
                    &D::paintingColorPicker),
        {"colorWellDropped:", ArgumentKind::Well, "",
         [](D& delegate, const Argument& argument) {
             delegate.colorWellDropped(wellOfTag(delegate.outlets(), argument.number));
         }},
        withControl("profileSelectPopup:", ArgumentKind::Index, "currentProfilePopup",
                    &D::profileSelectPopup),
        {"profileChangeAnswer:", ArgumentKind::ButtonTag, "",
         [](D& delegate, const Argument& argument) { delegate.profileChangeAnswer(argument.number); }},
        plain("copyProfileSameSame:", &D::copyProfileSameSame),
        plain("colorOK:", &D::colorOK),
        plain("colorCancel:", &D::colorCancel),

        plain("openWindowToMapKeys:", &D::openWindowToMapKeys),
        plain("actionKeySetterOK:", &D::actionKeySetterOK),
        plain("actionKeySetterCanx:", &D::actionKeySetterCanx),

        plain("ExportPreferencesMI:", &D::ExportPreferencesMI),
        plain("ImportPreferencesMI:", &D::ImportPreferencesMI),

        plain("autorunNoneMI:", &D::autorunNoneMI, "autorunNoneMI"),
        plain("autorunBNetMI:", &D::autorunBNetMI, "autorunBNetMI"),
        plain("autorunWowMI:", &D::autorunWowMI, "autorunWowMI"),
        plain("autorunClassicMI:", &D::autorunClassicMI, "autorunClassicMI"),
        plain("launchBNetMI:", &D::launchBNet),
        plain("BNLaunchBtnClicked:", &D::launchBNet),
        plain("launchWowMI:", &D::launchWow),
        plain("launchWoWBtnClicked:", &D::launchWow),
        plain("launchClassicMI:", &D::launchClassic),
        plain("launchWoWClassicBtnClicked:", &D::launchClassic),
        plain("handleLauncherOptionsMI:", &D::editGameNamesMI),
        plain("editGameNamesMI:", &D::editGameNamesMI),
        plain("launchOptionsOK:", &D::launchOptionsOK),

        plain("aboutMenuItem:", &D::aboutMenuItem),
        plain("AboutLinkClicked:", &D::AboutLinkClicked),
        plain("openDownloadsPage:", &D::openDownloadsPage),
        plain("helpMenuItem:", &D::helpMenuItem),
        plain("myBtnClicked:", &D::myBtnClicked),

        {"windowShouldClose:", ArgumentKind::WindowName, "",
         [](D& delegate, const Argument& argument) {
             if (auto* window = outletOfType<platform::Window>(delegate, argument.text))
                 delegate.windowShouldClose(*window);
         }},
    };
    for (const std::string selector : {"mouseDown:", "mouseDragged:"})
        table.push_back({selector, ArgumentKind::Point, "keyboardCanvas",
                         [](AppDelegate& delegate, const Argument& argument) {
                             delegate.mouseDown(argument.x, argument.y);
                         }});
    for (const profiles::ActionSlot& slot : profiles::actionSlots()) {
        const int number = slot.number;
        table.push_back({"actionKeyMenuClick" + std::to_string(number) + ":", ArgumentKind::Title,
                         "menu" + std::to_string(number),
                         [number](AppDelegate& delegate, const Argument& argument) {
                             delegate.actionKeyMenuClick(number, argument.text);
                         }});
    }
    return table;
}

bool isSendable(AppDelegate& delegate, const ActionRow& action) {
    if (action.kind == ArgumentKind::Point)
        return delegate.outlets().colorProgrammerWindow.visible.get();
    for (const NamedOutlet& outlet : namedOutlets(delegate.outlets()))
        if (outlet.name == action.outlet)
            return std::visit(
                [](const auto* control) {
                    if constexpr (std::is_base_of_v<platform::Control, std::decay_t<decltype(*control)>>)
                        return control->enabled.get();
                    else
                        return true;
                },
                outlet.control);
    return true;
}

} // namespace

std::span<const ActionRow> actionTable() {
    static const std::vector<ActionRow> table = makeTable();
    return table;
}

const ActionRow* findAction(std::string_view selector) {
    const std::span<const ActionRow> table = actionTable();
    const auto row = std::ranges::find(table, selector, &ActionRow::selector);
    return row == table.end() ? nullptr : &*row;
}

void sendAction(AppDelegate& delegate, const ActionRow& action, const ActionArgument& argument) {
    if (!isSendable(delegate, action))
        return;
    switch (action.kind) {
    case ArgumentKind::State:
        outletOfType<platform::CheckBox>(delegate, action.outlet)->on.set(argument.state);
        break;
    case ArgumentKind::Index: {
        auto* const popUp = outletOfType<platform::PopUp>(delegate, action.outlet);
        if (argument.number == popUp->separator)
            return;
        popUp->selected.set(argument.number);
        break;
    }
    case ArgumentKind::Title:
        outletOfType<platform::PopUp>(delegate, action.outlet)->selectTitle(argument.text);
        break;
    case ArgumentKind::Text:
        outletOfType<platform::TextField>(delegate, action.outlet)->text.set(argument.text);
        break;
    case ArgumentKind::RadioTag:
        outletOfType<platform::RadioGroup>(delegate, action.outlet)->selectedTag.set(argument.number);
        break;
    case ArgumentKind::Well:
        wellOfTag(delegate.outlets(), argument.number).color.set(argument.color);
        break;
    case ArgumentKind::None:
    case ArgumentKind::ButtonTag:
    case ArgumentKind::Point:
    case ArgumentKind::WindowName:
        break;
    }
    action.perform(delegate, argument);
}

} // namespace glimra::app
