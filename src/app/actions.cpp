#include "app/actions.h"

#include "app/color_wells.h"

#include <algorithm>

namespace glimra::app {

namespace {

using Argument = ActionArgument;

/// A row for a method that looks for itself at what its control shows.
ActionRow row(std::string selector, void (AppDelegate::*method)(), std::vector<std::string> outlets = {},
              ArgumentKind kind = ArgumentKind::None) {
    return {std::move(selector), kind, std::move(outlets),
            [method](AppDelegate& delegate, const Argument&) { (delegate.*method)(); }};
}

std::vector<ActionRow> makeTable() {
    using D = AppDelegate;
    std::vector<ActionRow> table{
        row("calibrateButton:", &D::calibrateButton),
        row("calibrateMI:", &D::calibrateMI),
        row("debugMenuItem:", &D::debugMenuItem),
        row("resetLightsMI:", &D::resetLightsMI),
        row("resetClicked:", &D::resetClicked),
        {"endStaleEffectsMI:",
         ArgumentKind::State,
         {},
         [](D& delegate, const Argument& argument) { delegate.setEndStaleEffects(argument.state); }},
        row("testLightsMI:", &D::testLightsMI),
        row("testButton:", &D::testButton),

        row("setColorsMI:", &D::setColorsMI),
        row("setColorsBtn:", &D::setColorsBtn),
        row("controlAllLightsCheck:", &D::controlAllLightsCheck, {"controlAllLightsCheckbox"},
            ArgumentKind::State),
        row("singleColorModeCheck:", &D::singleColorModeCheck, {"singleColorModeBtn"}, ArgumentKind::State),
        row("autoToggleProfileClicked:", &D::autoToggleProfileClicked, {"autoChatProfileCheckbox"},
            ArgumentKind::State),
        row("combatChatWarningClicked:", &D::combatChatWarningClicked, {"combatChatAlertCheckbox"},
            ArgumentKind::State),
        row("cooldownCheck:", &D::cooldownCheck, {"actionBarEffectCheckbox"}, ArgumentKind::State),
        row("revealCooldownColors:", &D::revealCooldownColors, {"cooldownPreviewBtn"}),
        row("blinkTimeChanged:", &D::blinkTimeChanged, {"blinkTimeTextbox"}, ArgumentKind::Text),
        row("paintingColorPicker:", &D::paintingColorPicker, {"colorButtonGroup"}, ArgumentKind::RadioTag),
        {"colorWellDropped:",
         ArgumentKind::Well,
         {},
         [](D& delegate, const Argument& argument) {
             delegate.colorWellDropped(wellOfTag(delegate.outlets(), argument.number));
         }},
        row("profileSelectPopup:", &D::profileSelectPopup, {"currentProfilePopup"}, ArgumentKind::Index),
        {"profileChangeAnswer:",
         ArgumentKind::ButtonTag,
         {},
         [](D& delegate, const Argument& argument) { delegate.profileChangeAnswer(argument.number); }},
        row("copyProfileSameSame:", &D::copyProfileSameSame, {"fromProfileMenu", "toProfileMenu"}),
        row("colorOK:", &D::colorOK),
        row("colorCancel:", &D::colorCancel),

        row("openWindowToMapKeys:", &D::openWindowToMapKeys),
        row("actionKeySetterOK:", &D::actionKeySetterOK),
        row("actionKeySetterCanx:", &D::actionKeySetterCanx),

        row("ExportPreferencesMI:", &D::ExportPreferencesMI),
        row("ImportPreferencesMI:", &D::ImportPreferencesMI),

        row("autorunNoneMI:", &D::autorunNoneMI, {"autorunNoneMI"}),
        row("autorunBNetMI:", &D::autorunBNetMI, {"autorunBNetMI"}),
        row("autorunWowMI:", &D::autorunWowMI, {"autorunWowMI"}),
        row("autorunClassicMI:", &D::autorunClassicMI, {"autorunClassicMI"}),
        row("launchBNetMI:", &D::launchBNet),
        row("BNLaunchBtnClicked:", &D::launchBNet),
        row("launchWowMI:", &D::launchWow),
        row("launchWoWBtnClicked:", &D::launchWow),
        row("launchClassicMI:", &D::launchClassic),
        row("launchWoWClassicBtnClicked:", &D::launchClassic),
        row("handleLauncherOptionsMI:", &D::editGameNamesMI),
        row("editGameNamesMI:", &D::editGameNamesMI),
        row("launchOptionsOK:", &D::launchOptionsOK),

        row("aboutMenuItem:", &D::aboutMenuItem),
        row("AboutLinkClicked:", &D::AboutLinkClicked),
        row("openDownloadsPage:", &D::openDownloadsPage),
        row("helpMenuItem:", &D::helpMenuItem),
        row("myBtnClicked:", &D::myBtnClicked),

        row("undo:", &D::undo),
        row("redo:", &D::redo),
        row("endEdit:", &D::endEdit),
        row("settleEdits:", &D::settleEdits),
        {"colorWellRestored:",
         ArgumentKind::Well,
         {},
         [](D& delegate, const Argument& argument) {
             delegate.colorWellRestored(wellOfTag(delegate.outlets(), argument.number));
         }},
        {"showProfile:",
         ArgumentKind::ButtonTag,
         {},
         [](D& delegate, const Argument& argument) { delegate.showProfile(argument.number); }},

        {"windowShouldClose:",
         ArgumentKind::WindowName,
         {},
         [](D& delegate, const Argument& argument) {
             if (const auto outlet = findOutlet(delegate.outlets(), argument.text))
                 if (auto* const* window = std::get_if<platform::Window*>(&*outlet))
                     delegate.windowShouldClose(**window);
         }},
    };
    using PointMethod = void (D::*)(double, double);
    for (const auto& [selector, method] :
         {std::pair<std::string, PointMethod>{"mouseDown:", &D::mouseDown},
          std::pair<std::string, PointMethod>{"mouseDragged:", &D::mouseDragged}})
        table.push_back({selector,
                         ArgumentKind::Point,
                         {"keyboardCanvas"},
                         [method = method](D& delegate, const Argument& argument) {
                             (delegate.*method)(argument.x, argument.y);
                         }});
    for (const profiles::ActionSlot& slot : profiles::actionSlots()) {
        const int number = slot.number;
        table.push_back({"actionKeyMenuClick" + std::to_string(number) + ":",
                         ArgumentKind::Title,
                         {"menu" + std::to_string(number)},
                         [number](AppDelegate& delegate, const Argument& argument) {
                             delegate.actionKeyMenuClick(number, argument.text);
                         }});
    }
    return table;
}

/// The control that sends the action; none where it is no outlet, or one of several that change nothing.
std::optional<ControlPointer> senderOf(AppDelegate& delegate, const ActionRow& action,
                                       const Argument& argument) {
    if (action.kind == ArgumentKind::Well)
        return &wellOfTag(delegate.outlets(), argument.number);
    if (action.outlets.size() != 1)
        return std::nullopt;
    return findOutlet(delegate.outlets(), action.outlets.front());
}

/// Whether the control lets the user do this.
bool canSend(AppDelegate& delegate, const ControlPointer& sender, ArgumentKind kind,
             const Argument& argument) {
    if (kind == ArgumentKind::Point)
        return delegate.outlets().colorProgrammerWindow.visible.get();
    if (kind == ArgumentKind::Index && std::get<platform::PopUp*>(sender)->separator == argument.number)
        return false;
    return std::visit(
        [](const auto* control) {
            if constexpr (std::is_base_of_v<platform::Control, std::decay_t<decltype(*control)>>)
                return control->enabled.get();
            else
                return true;
        },
        sender);
}

/// The control takes the state that the user gives it.
void change(const ControlPointer& control, ArgumentKind kind, const Argument& argument) {
    switch (kind) {
    case ArgumentKind::State:
        return std::get<platform::CheckBox*>(control)->on.set(argument.state);
    case ArgumentKind::Index:
        return std::get<platform::PopUp*>(control)->selected.set(argument.number);
    case ArgumentKind::Title:
        return std::get<platform::PopUp*>(control)->selectTitle(argument.text);
    case ArgumentKind::Text:
        return std::get<platform::TextField*>(control)->text.set(argument.text);
    case ArgumentKind::RadioTag:
        return std::get<platform::RadioGroup*>(control)->selectedTag.set(argument.number);
    case ArgumentKind::Well:
        return std::get<platform::ColorWell*>(control)->color.set(argument.color);
    case ArgumentKind::None:
    case ArgumentKind::ButtonTag:
    case ArgumentKind::Point:
    case ArgumentKind::WindowName:
        return;
    }
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
    if (const std::optional<ControlPointer> sender = senderOf(delegate, action, argument)) {
        if (!canSend(delegate, *sender, action.kind, argument))
            return;
        change(*sender, action.kind, argument);
    }
    action.perform(delegate, argument);
}

} // namespace glimra::app
