#include "tools/replay/action_table.h"

#include <algorithm>
#include <array>

namespace glimra::tools {

namespace {

/// Every action of the application, one a row.
constexpr std::array<Action, 0> kActions{};

using app::ControlPointer;

/// The outlet of that name; a null pointer of a window when there is none.
ControlPointer findOutlet(app::Outlets& outlets, std::string_view name) {
    const std::vector<app::NamedOutlet> named = app::namedOutlets(outlets);
    const auto found = std::ranges::find(named, name, &app::NamedOutlet::name);
    return found == named.end() ? ControlPointer{} : found->control;
}

/// The colour well of that tag; wells of other tags than 1 to 12 are the one for cooldowns.
platform::ColorWell& colorWell(app::Outlets& outlets, int tag) {
    for (const app::NamedOutlet& outlet : app::namedOutlets(outlets))
        if (auto* const* well = std::get_if<platform::ColorWell*>(&outlet.control))
            if ((*well)->tag == tag)
                return **well;
    return outlets.keyCoolColor;
}

/// Gives a control the state that the user gives it. Answers false when the control is disabled, and changes
/// nothing then.
class ChangeState {
public:
    explicit ChangeState(const ActionArgument& argument) : m_argument(argument) {}

    bool operator()(platform::CheckBox* box) const {
        return change(box, [this, box] { box->on.set(std::get<bool>(m_argument)); });
    }
    bool operator()(platform::RadioGroup* group) const {
        return change(group, [this, group] { group->selectedTag.set(std::get<int>(m_argument)); });
    }
    bool operator()(platform::PopUp* popUp) const {
        return change(popUp, [this, popUp] {
            if (const auto* title = std::get_if<std::string>(&m_argument))
                popUp->selectTitle(*title);
            else
                popUp->selected.set(std::get<int>(m_argument));
        });
    }
    bool operator()(platform::TextField* field) const {
        return change(field, [this, field] { field->text.set(std::get<std::string>(m_argument)); });
    }
    bool operator()(platform::ColorWell* well) const {
        return change(well, [this, well] { well->color.set(std::get<TaggedColor>(m_argument).color); });
    }
    bool operator()(platform::Button* button) const { return button->enabled.get(); }
    bool operator()(platform::MenuItem* item) const { return item->enabled.get(); }
    /// A window, a view or a label is no control.
    bool operator()(auto*) const { return true; }

private:
    template <class Change>
    static bool change(const platform::Control* control, Change makeChange) {
        if (!control->enabled.get())
            return false;
        makeChange();
        return true;
    }

    const ActionArgument& m_argument;
};

} // namespace

const Action* findAction(std::string_view selector) {
    const auto* found = std::ranges::find(kActions, selector, &Action::selector);
    return found == kActions.end() ? nullptr : found;
}

void performAction(app::AppDelegate& delegate, const Action& action, const ActionArgument& argument) {
    app::Outlets& outlets = delegate.outlets();
    ControlPointer sender = findOutlet(outlets, action.sender);
    if (const auto* colored = std::get_if<TaggedColor>(&argument))
        sender = &colorWell(outlets, colored->tag);
    if (std::visit(ChangeState(argument), sender))
        action.send(delegate, argument);
}

void performSetting(app::AppDelegate& delegate, std::string_view outlet, const ActionArgument& argument) {
    if (!std::visit(ChangeState(argument), findOutlet(delegate.outlets(), outlet)))
        return;
    const auto* action = std::ranges::find(kActions, outlet, &Action::sender);
    if (action != kActions.end())
        action->send(delegate, argument);
}

bool takesSetting(std::string_view outlet, const ActionArgument& argument) {
    static app::Outlets outlets;
    const ControlPointer control = findOutlet(outlets, outlet);
    return std::holds_alternative<platform::TextField*>(control)
               ? std::holds_alternative<std::string>(argument)
               : std::holds_alternative<platform::PopUp*>(control) && std::holds_alternative<int>(argument);
}

} // namespace glimra::tools
