#pragma once

#include "app/action_argument.h"
#include "app/outlets.h"
#include "platform/window_system.h"
#include "profiles/profile_state.h"
#include "profiles/profile_store.h"

namespace glimra::app {

/// Asks, before something takes the canvas over, what shall become of edits that are not saved. Main thread.
class UnsavedEdits {
public:
    UnsavedEdits(platform::WindowSystem& windows, Outlets& outlets, profiles::ProfileStore& store,
                 profiles::ProfileState& profile);

    /// True when nothing is unsaved, or when the user has saved or discarded it. False when the user wants to
    /// go on editing.
    [[nodiscard]] bool settle();
    /// Asks the same for the desktop. Afterwards the canvas counts as edited only if the user goes on
    /// editing.
    void settleEdits();
    /// A button of this question, or of the editor's other one, was clicked: its tag is the answer.
    void profileChangeAnswer(const ButtonTag& button);

private:
    platform::WindowSystem& m_windows;
    Outlets& m_outlets;
    profiles::ProfileStore& m_store;
    profiles::ProfileState& m_profile;
};

} // namespace glimra::app
