#include "tools/replay/modal_setting.h"

#include <algorithm>

namespace glimra::tools {

namespace {

using app::Outlets;

/// Whether an outlet is of one of these kinds.
template <class... Members>
bool isOutletOf(std::string_view name) {
    const app::NamedOutlet* const outlet = app::findOutlet(name);
    return outlet != nullptr && (std::holds_alternative<Members>(outlet->member) || ...);
}

/// The action that a control sends, if any.
const app::ActionRow* actionOf(std::string_view outlet) {
    const std::span<const app::ActionRow> actions = app::actionTable();
    const auto found = std::ranges::find_if(actions, [outlet](const app::ActionRow& action) {
        return std::ranges::find(action.outlets, outlet) != action.outlets.end();
    });
    return found == actions.end() ? nullptr : &*found;
}

} // namespace

bool isPossible(const ModalSetting& setting) {
    return std::holds_alternative<std::string>(setting.value)
               ? isOutletOf<platform::TextField Outlets::*>(setting.outlet)
               : isOutletOf<platform::PopUp Outlets::*, app::KeyMenu>(setting.outlet);
}

bool isWindow(std::string_view outlet) {
    return isOutletOf<platform::Window Outlets::*>(outlet);
}

void applySetting(app::AppDelegate& delegate, const ModalSetting& setting) {
    const app::ControlPointer control = app::findOutlet(setting.outlet)->in(delegate.outlets());
    const app::ActionRow* const action = actionOf(setting.outlet);
    // What the control's own action is given.
    app::ActionArgument argument = action != nullptr ? action->call.takes : std::monostate{};
    if (auto* const* const field = std::get_if<platform::TextField*>(&control)) {
        if (!(*field)->enabled.get())
            return;
        (*field)->text.set(std::get<std::string>(setting.value));
        if (auto* const entered = std::get_if<app::EnteredText>(&argument))
            entered->text = (*field)->text.get();
    } else {
        platform::PopUp* const popUp = std::get<platform::PopUp*>(control);
        const int index = std::get<int>(setting.value);
        if (!popUp->enabled.get() || index == popUp->separator)
            return;
        popUp->selected.set(index);
        if (auto* const item = std::get_if<app::ItemIndex>(&argument))
            item->index = index;
        else if (auto* const titled = std::get_if<app::ItemTitle>(&argument))
            titled->title = popUp->selectedTitle();
    }
    if (action != nullptr)
        app::sendAction(delegate, *action, argument);
}

} // namespace glimra::tools
