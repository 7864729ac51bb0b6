#pragma once

#include "app/outlets.h"
#include "platform/window_system.h"
#include "profiles/profile_state.h"
#include "profiles/profile_store.h"

namespace glimra::app {

/// Asks, before something takes the canvas over, what shall become of edits that are not saved. Main thread.
class UnsavedEdits {
public:
    UnsavedEdits(platform::WindowSystem& windows, Outlets& outlets, profiles::ProfileStore& store,
                 const profiles::ProfileState& profile);

    /// Nothing is unsaved, or the user has had it saved or given it up. False: the user wants to go on
    /// editing.
    [[nodiscard]] bool settle();

private:
    platform::WindowSystem& m_windows;
    Outlets& m_outlets;
    profiles::ProfileStore& m_store;
    const profiles::ProfileState& m_profile;
};

} // namespace glimra::app
