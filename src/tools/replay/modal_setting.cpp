#include "tools/replay/modal_setting.h"

#include <algorithm>

namespace glimra::tools {

namespace {

using app::ControlPointer;

std::optional<ControlPointer> findOutlet(app::Outlets& outlets, std::string_view name) {
    const std::vector<app::NamedOutlet> named = app::namedOutlets(outlets);
    const auto found = std::ranges::find(named, name, &app::NamedOutlet::name);
    if (found == named.end())
        return std::nullopt;
    return found->control;
}

template <class ControlType>
bool isOutletOf(std::string_view name) {
    static app::Outlets outlets; // looked at for their names only
    const std::optional<ControlPointer> control = findOutlet(outlets, name);
    return control && std::holds_alternative<ControlType*>(*control);
}

/// What the control's own action is given.
app::ActionArgument argumentOf(const ModalSetting& setting, const ControlPointer& control) {
    app::ActionArgument argument;
    if (const auto* text = std::get_if<std::string>(&setting.value)) {
        argument.text = *text;
        return argument;
    }
    argument.number = std::get<int>(setting.value);
    const std::vector<std::string>& titles = std::get<platform::PopUp*>(control)->titles.get();
    if (const auto index = static_cast<std::size_t>(argument.number); index < titles.size())
        argument.text = titles[index];
    return argument;
}

} // namespace

bool isPossible(const ModalSetting& setting) {
    return std::holds_alternative<std::string>(setting.value)
               ? isOutletOf<platform::TextField>(setting.outlet)
               : isOutletOf<platform::PopUp>(setting.outlet);
}

bool isWindow(std::string_view outlet) {
    return isOutletOf<platform::Window>(outlet);
}

void applySetting(app::AppDelegate& delegate, const ModalSetting& setting) {
    const std::optional<ControlPointer> control = findOutlet(delegate.outlets(), setting.outlet);
    const std::span<const app::ActionRow> actions = app::actionTable();
    const auto action = std::ranges::find(actions, setting.outlet, &app::ActionRow::outlet);
    if (action != actions.end()) {
        app::sendAction(delegate, *action, argumentOf(setting, *control));
    } else if (const auto* const field = std::get_if<platform::TextField*>(&*control)) {
        if ((*field)->enabled.get())
            (*field)->text.set(std::get<std::string>(setting.value));
    } else if (platform::PopUp* const popUp = std::get<platform::PopUp*>(*control); popUp->enabled.get()) {
        popUp->selected.set(std::get<int>(setting.value));
    }
}

} // namespace glimra::tools
