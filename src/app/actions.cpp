#include "app/actions.h"

#include "app/color_wells.h"

#include <algorithm>
#include <type_traits>

namespace glimra::app {

namespace {

/// A call of an operation that looks for itself at what its control shows, and so is given nothing of the
/// argument, a `Sent`.
template <class Sent = std::monostate, class Object, class... Constants>
ActionCall calls(Object Operations::*object, void (Object::*operation)(Constants...),
                 std::type_identity_t<Constants>... constants) {
    return {Sent{}, [=](Operations& operations, const ActionArgument&) {
                (operations.*object.*operation)(constants...);
            }};
}

/// A call of an operation that is given the argument, before the constants.
template <class Object, class Sent, class... Constants>
ActionCall gives(Object Operations::*object, void (Object::*operation)(Sent, Constants...),
                 std::type_identity_t<Constants>... constants) {
    using Argument = std::decay_t<Sent>;
    return {Argument{}, [=](Operations& operations, const ActionArgument& argument) {
                (operations.*object.*operation)(std::get<Argument>(argument), constants...);
            }};
}

std::vector<ActionRow> makeTable() {
    using O = Operations;
    using Autorun = LauncherState;
    constexpr events::ResetNotice kLogged = events::ResetNotice::Logged;
    std::vector<ActionRow> table{
        {"calibrateButton:", {}, calls(&O::calibration, &screenlink::Calibration::calibrateScreen)},
        {"calibrateMI:", {}, calls(&O::calibration, &screenlink::Calibration::calibrateScreen)},
        {"debugMenuItem:", {}, calls(&O::diagnostics, &Diagnostics::toggleDebugMode)},
        {"resetLightsMI:", {}, calls(&O::dispatcher, &events::Dispatcher::resetLights, kLogged)},
        {"resetClicked:", {}, calls(&O::dispatcher, &events::Dispatcher::resetLights, kLogged)},
        {"endStaleEffectsMI:", {}, gives(&O::staleEffects, &screenlink::StaleEffects::setEndStaleEffects)},
        {"fastResponseMI:", {}, gives(&O::messageClock, &screenlink::MessageClock::setFastResponse)},
        {"testLightsMI:", {}, calls(&O::diagnostics, &Diagnostics::showTestPattern)},
        {"testButton:", {}, calls(&O::diagnostics, &Diagnostics::showTestPattern)},

        {"setColorsMI:", {}, calls(&O::colorProgrammer, &ColorProgrammer::openColorProgrammer)},
        {"setColorsBtn:", {}, calls(&O::colorProgrammer, &ColorProgrammer::openColorProgrammer)},
        {"controlAllLightsCheck:",
         {"controlAllLightsCheckbox"},
         calls<bool>(&O::colorProgrammer, &ColorProgrammer::applyCanvasColors)},
        {"singleColorModeCheck:",
         {"singleColorModeBtn"},
         calls<bool>(&O::colorProgrammer, &ColorProgrammer::singleColorModeCheck)},
        {"autoToggleProfileClicked:",
         {"autoChatProfileCheckbox"},
         calls<bool>(&O::colorProgrammer, &ColorProgrammer::autoToggleProfileClicked)},
        {"combatChatWarningClicked:",
         {"combatChatAlertCheckbox"},
         calls<bool>(&O::colorProgrammer, &ColorProgrammer::combatChatWarningClicked)},
        {"cooldownCheck:",
         {"actionBarEffectCheckbox"},
         gives(&O::cooldownDisplay, &events::CooldownDisplay::showCooldowns)},
        {"revealCooldownColors:",
         {"cooldownPreviewBtn"},
         calls(&O::cooldownDisplay, &events::CooldownDisplay::revealCooldownColors)},
        {"blinkTimeChanged:",
         {"blinkTimeTextbox"},
         calls<EnteredText>(&O::cooldownDisplay, &events::CooldownDisplay::blinkTimeChanged)},
        {"paintingColorPicker:",
         {"colorButtonGroup"},
         calls<RadioTag>(&O::colorProgrammer, &ColorProgrammer::paintingColorPicker)},
        {"colorWellDropped:", {}, gives(&O::colorProgrammer, &ColorProgrammer::colorWellDropped)},
        {"colorWellRestored:", {}, gives(&O::colorProgrammer, &ColorProgrammer::colorWellRestored)},
        {"profileSelectPopup:",
         {"currentProfilePopup"},
         calls<ItemIndex>(&O::colorProgrammer, &ColorProgrammer::profileSelectPopup)},
        {"profileChangeAnswer:", {}, gives(&O::unsavedEdits, &UnsavedEdits::profileChangeAnswer)},
        {"copyProfileSameSame:",
         {"fromProfileMenu", "toProfileMenu"},
         calls(&O::colorProgrammer, &ColorProgrammer::copyProfileSameSame)},
        {"colorOK:", {}, calls(&O::colorProgrammer, &ColorProgrammer::colorOK)},
        {"colorCancel:", {}, calls(&O::colorProgrammer, &ColorProgrammer::colorCancel)},
        {"showProfile:", {}, gives(&O::colorProgrammer, &ColorProgrammer::showProfile)},

        {"mouseDown:", {"keyboardCanvas"}, gives(&O::colorPainter, &ColorPainter::mouseDown)},
        {"mouseDragged:", {"keyboardCanvas"}, gives(&O::colorPainter, &ColorPainter::mouseDragged)},
        {"undo:", {}, calls(&O::canvasEdits, &CanvasEdits::undo)},
        {"redo:", {}, calls(&O::canvasEdits, &CanvasEdits::redo)},
        {"endEdit:", {}, calls(&O::canvasEdits, &CanvasEdits::endStep)},
        {"settleEdits:", {}, calls(&O::unsavedEdits, &UnsavedEdits::settleEdits)},

        {"openWindowToMapKeys:", {}, calls(&O::actionKeySetter, &ActionKeySetter::openWindowToMapKeys)},
        {"actionKeySetterOK:", {}, calls(&O::actionKeySetter, &ActionKeySetter::actionKeySetterOK)},
        {"actionKeySetterCanx:", {}, calls(&O::actionKeySetter, &ActionKeySetter::actionKeySetterCanx)},

        {"ExportPreferencesMI:", {}, calls(&O::profileTransfer, &ProfileTransfer::exportPreferences)},
        {"ImportPreferencesMI:", {}, calls(&O::profileTransfer, &ProfileTransfer::importPreferences)},

        {"autorunNoneMI:",
         {"autorunNoneMI"},
         calls(&O::launcher, &Launcher::setAutorun, &Outlets::autorunNoneMI, nullptr)},
        {"autorunBNetMI:",
         {"autorunBNetMI"},
         calls(&O::launcher, &Launcher::setAutorun, &Outlets::autorunBNetMI, &Autorun::BNAppName)},
        {"autorunWowMI:",
         {"autorunWowMI"},
         calls(&O::launcher, &Launcher::setAutorun, &Outlets::autorunWowMI, &Autorun::WowAppName)},
        {"autorunClassicMI:",
         {"autorunClassicMI"},
         calls(&O::launcher, &Launcher::setAutorun, &Outlets::autorunClassicMI, &Autorun::WowClassicAppName)},
        {"launchBNetMI:", {}, calls(&O::launcher, &Launcher::launchApp, &Autorun::BNAppName)},
        {"BNLaunchBtnClicked:", {}, calls(&O::launcher, &Launcher::launchApp, &Autorun::BNAppName)},
        {"launchWowMI:", {}, calls(&O::launcher, &Launcher::launchApp, &Autorun::WowAppName)},
        {"launchWoWBtnClicked:", {}, calls(&O::launcher, &Launcher::launchApp, &Autorun::WowAppName)},
        {"launchClassicMI:", {}, calls(&O::launcher, &Launcher::launchApp, &Autorun::WowClassicAppName)},
        {"launchWoWClassicBtnClicked:",
         {},
         calls(&O::launcher, &Launcher::launchApp, &Autorun::WowClassicAppName)},
        {"handleLauncherOptionsMI:", {}, calls(&O::launcher, &Launcher::editGameNames)},
        {"editGameNamesMI:", {}, calls(&O::launcher, &Launcher::editGameNames)},
        {"launchOptionsOK:", {}, calls(&O::launcher, &Launcher::launchOptionsOK)},

        {"aboutMenuItem:", {}, calls(&O::help, &Help::aboutMenuItem)},
        {"AboutLinkClicked:", {}, calls(&O::help, &Help::openHomePage)},
        {"openDownloadsPage:", {}, calls(&O::help, &Help::openDownloadsPage)},
        {"helpMenuItem:", {}, calls(&O::help, &Help::helpMenuItem)},
        {"myBtnClicked:", {}, calls(&O::help, &Help::myBtnClicked)},

        {"windowShouldClose:", {}, gives(&O::windowCloser, &WindowCloser::windowShouldClose)},
    };
    for (const profiles::ActionSlot& slot : profiles::actionSlots()) {
        const std::string number = std::to_string(slot.number);
        table.push_back({"actionKeyMenuClick" + number + ":",
                         {"menu" + number},
                         gives(&O::actionKeySetter, &ActionKeySetter::actionKeyMenuClick, slot.number)});
    }
    return table;
}

/// The control that sends the action; none where it is no outlet, or one of several that change nothing.
std::optional<ControlPointer> senderOf(Outlets& outlets, const ActionRow& action,
                                       const ActionArgument& argument) {
    if (const auto* const well = std::get_if<WellColor>(&argument))
        return &wellOfTag(outlets, well->tag);
    if (action.outlets.size() != 1)
        return std::nullopt;
    return findOutlet(action.outlets.front())->in(outlets);
}

/// Whether the control lets the user do this.
bool canSend(const Outlets& outlets, const ControlPointer& sender, const ActionArgument& argument) {
    if (std::holds_alternative<CanvasPoint>(argument))
        return outlets.colorProgrammerWindow.visible.get();
    if (const auto* const item = std::get_if<ItemIndex>(&argument);
        item != nullptr && std::get<platform::PopUp*>(sender)->separator == item->index)
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

/// Gives a control the state that the user gives it.
struct Change {
    const ControlPointer& control;

    void operator()(bool on) const { std::get<platform::CheckBox*>(control)->on.set(on); }
    void operator()(const ItemIndex& item) const {
        std::get<platform::PopUp*>(control)->selected.set(item.index);
    }
    void operator()(const ItemTitle& item) const {
        std::get<platform::PopUp*>(control)->selectTitle(item.title);
    }
    void operator()(const EnteredText& entered) const {
        std::get<platform::TextField*>(control)->text.set(entered.text);
    }
    void operator()(const RadioTag& chosen) const {
        std::get<platform::RadioGroup*>(control)->selectedTag.set(chosen.tag);
    }
    void operator()(const WellColor& well) const {
        std::get<platform::ColorWell*>(control)->color.set(well.color);
    }
    /// Whatever else is sent changes nothing of its control.
    void operator()(const auto&) const {}
};

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
    Outlets& outlets = delegate.outlets();
    if (const std::optional<ControlPointer> sender = senderOf(outlets, action, argument)) {
        if (!canSend(outlets, *sender, argument))
            return;
        std::visit(Change{*sender}, argument);
    }
    action.call.perform(delegate.operations(), argument);
}

} // namespace glimra::app
