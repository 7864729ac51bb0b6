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
    std::vector<ActionRow> table{
        plain("calibrateButton:", &AppDelegate::calibrateButton),
        plain("calibrateMI:", &AppDelegate::calibrateMI),
        plain("debugMenuItem:", &AppDelegate::debugMenuItem),
        plain("resetLightsMI:", &AppDelegate::resetLightsMI),
        plain("resetClicked:", &AppDelegate::resetClicked),

        withControl("cooldownCheck:", ArgumentKind::State, "actionBarEffectCheckbox",
                    &AppDelegate::cooldownCheck),
        plain("revealCooldownColors:", &AppDelegate::revealCooldownColors, "cooldownPreviewBtn"),
        withControl("blinkTimeChanged:", ArgumentKind::Text, "blinkTimeTextbox",
                    &AppDelegate::blinkTimeChanged),
        {"profileChangeAnswer:", ArgumentKind::ButtonTag, "",
         [](AppDelegate& delegate, const Argument& argument) {
             delegate.profileChangeAnswer(argument.number);
         }},

        plain("openWindowToMapKeys:", &AppDelegate::openWindowToMapKeys),
        plain("actionKeySetterOK:", &AppDelegate::actionKeySetterOK),
        plain("actionKeySetterCanx:", &AppDelegate::actionKeySetterCanx),

        {"windowShouldClose:", ArgumentKind::WindowName, "",
         [](AppDelegate& delegate, const Argument& argument) {
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
    case ArgumentKind::Index:
        outletOfType<platform::PopUp>(delegate, action.outlet)->selected.set(argument.number);
        break;
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
        for (platform::ColorWell* well : colorWells(delegate.outlets()))
            if (well->tag == argument.number)
                well->color.set(argument.color);
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
