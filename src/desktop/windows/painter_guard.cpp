#include "desktop/windows/painter_guard.h"

#include <algorithm>
#include <array>

namespace glimra::desktop {

using app::ActionArgument;

/// What becomes of an action that is not simply performed.
struct PainterGuard::Rule {
    std::string_view selector;
    void (PainterGuard::*send)(const Action&);
};

PainterGuard::PainterGuard(const Parts& parts) : m_parts(parts) {
    m_parts.binder.setRoute([this](const app::ActionRow& row, const ActionArgument& argument) {
        send({row, argument});
    });
    m_parts.binder.claim({"showProfile:", "settleEdits:"});
}

void PainterGuard::send(const Action& action) {
    using Self = PainterGuard;
    static constexpr std::array kRules{
        Rule{"setColorsMI:", &Self::openPainter},
        Rule{"setColorsBtn:", &Self::openPainter},
        Rule{"openWindowToMapKeys:", &Self::openSetter},
        Rule{"windowShouldClose:", &Self::close},
        Rule{"showProfile:", &Self::showProfile},
        Rule{"ImportPreferencesMI:", &Self::importProfiles},
        Rule{"revealCooldownColors:", &Self::preview},
        Rule{"colorOK:", &Self::endPainting},
        Rule{"colorCancel:", &Self::endPainting},
        Rule{"profileSelectPopup:", &Self::performForCanvas},
        Rule{"cooldownCheck:", &Self::performForCanvas},
        Rule{"singleColorModeCheck:", &Self::performForCanvas},
        Rule{"controlAllLightsCheck:", &Self::performForCanvas},
    };
    const auto* const rule = std::ranges::find(kRules, action.row.selector, &Rule::selector);
    if (rule == kRules.end())
        perform(action);
    else
        (this->*rule->send)(action);
}

void PainterGuard::quit() {
    if (!m_parts.windowSystem.raiseModal() && leavePainter())
        m_parts.quit();
}

void PainterGuard::openPainter(const Action& action) {
    // To open it anew would fill the canvas from the store.
    if (painterShows())
        m_parts.delegate.outlets().colorProgrammerWindow.bringToFront();
    else
        perform(action);
}

void PainterGuard::openSetter(const Action& action) {
    // To open it anew would make the choices of now those that its Cancel goes back to.
    platform::Window& setter = m_parts.delegate.outlets().actionKeySetterWindow;
    if (setter.visible.get())
        setter.bringToFront();
    else
        performForCanvas(action);
}

void PainterGuard::close(const Action& action) {
    const std::string& window = std::get<app::WindowName>(action.argument).name;
    if (window == "actionKeySetterWindow")
        m_parts.binder.perform("actionKeySetterCanx:");
    else if (window == "colorProgrammerWindow")
        static_cast<void>(leavePainter());
    else if (window != "mainWindow")
        perform(action);
    else if (leavePainter()) {
        if (m_parts.staysInTray())
            m_parts.delegate.outlets().mainWindow.visible.set(false);
        else
            perform(action);
    }
}

void PainterGuard::showProfile(const Action& action) {
    // A question is about the profile that it was asked for.
    if (!m_parts.windowSystem.raiseModal())
        perform(action);
}

void PainterGuard::importProfiles(const Action& action) {
    // It fills the canvas.
    if (!m_parts.delegate.state().profile.profileTouched || leavePainter())
        perform(action);
}

void PainterGuard::preview(const Action& action) {
    // It is drawn later; shown anew, the other profile leaves the canvas its own cooldowns.
    if (const int shown = m_parts.delegate.state().profile.activeColorProfile;
        shown != m_parts.delegate.state().canvas.profile)
        showOnKeyboard(shown);
    perform(action);
}

void PainterGuard::endPainting(const Action& action) {
    forCanvas(Afterwards::FromTheStore, [&] { perform(action); });
}

void PainterGuard::performForCanvas(const Action& action) {
    forCanvas(Afterwards::AsItWas, [&] { perform(action); });
}

void PainterGuard::forCanvas(Afterwards light, const std::function<void()>& act) {
    const app::State& state = m_parts.delegate.state();
    const int shown = state.profile.activeColorProfile;
    const int edited = painterShows() ? state.canvas.profile : shown;
    if (edited != shown)
        showOnKeyboard(edited);
    act();
    // The user may have quit in a question.
    if (m_parts.runLoop.isTerminated())
        return;
    const int chosen = state.profile.activeColorProfile;
    if (light == Afterwards::FromTheStore || (edited != shown && chosen == edited))
        showOnKeyboard(chosen == edited ? shown : chosen);
}

bool PainterGuard::leavePainter() {
    if (!painterShows())
        return true;
    const bool& isTouched = m_parts.delegate.state().profile.profileTouched;
    if (isTouched)
        forCanvas(Afterwards::AsItWas, [this] { m_parts.binder.perform("settleEdits:"); });
    if (isTouched)
        return false;
    forCanvas(Afterwards::FromTheStore, [this] {
        m_parts.binder.perform("windowShouldClose:", app::WindowName{"colorProgrammerWindow"});
        m_parts.binder.perform("colorCancel:");
    });
    return true;
}

void PainterGuard::showOnKeyboard(int profile) {
    m_parts.binder.perform("showProfile:", app::ButtonTag{profile});
}

bool PainterGuard::painterShows() const {
    return m_parts.delegate.outlets().colorProgrammerWindow.visible.get();
}

} // namespace glimra::desktop
