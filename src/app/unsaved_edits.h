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

    /// Nothing is unsaved, or the user has had it saved or given it up. False: the user wants to go on
    /// editing.
    [[nodiscard]] bool settle();
    /// Asks likewise, on behalf of the desktop: the canvas counts as edited afterwards only where the user
    /// wants to go on editing.
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
