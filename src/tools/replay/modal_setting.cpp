#include "tools/replay/modal_setting.h"

#include <algorithm>

namespace glimra::tools {

namespace {

using app::ControlPointer;

template <class ControlType>
bool isOutletOf(std::string_view name) {
    static app::Outlets outlets; // used for their names only
    const std::optional<ControlPointer> control = app::findOutlet(outlets, name);
    return control && std::holds_alternative<ControlType*>(*control);
}

/// The action that a control sends, if any.
const app::ActionRow* actionOf(std::string_view outlet) {
    const std::span<const app::ActionRow> actions = app::actionTable();
    const auto found = std::ranges::find_if(actions, [outlet](const app::ActionRow& action) {
        return std::ranges::find(action.outlets, outlet) != action.outlets.end();
    });
    return found == actions.end() ? nullptr : &*found;
}

/// The argument of the action that the control sends.
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
    const std::optional<ControlPointer> control = app::findOutlet(delegate.outlets(), setting.outlet);
    if (const auto* const field = std::get_if<platform::TextField*>(&*control)) {
        if (!(*field)->enabled.get())
            return;
        (*field)->text.set(std::get<std::string>(setting.value));
    } else {
        platform::PopUp* const popUp = std::get<platform::PopUp*>(*control);
        const int index = std::get<int>(setting.value);
        if (!popUp->enabled.get() || index == popUp->separator)
            return;
        popUp->selected.set(index);
    }
    if (const app::ActionRow* const action = actionOf(setting.outlet))
        app::sendAction(delegate, *action, argumentOf(setting, *control));
}

} // namespace glimra::tools
