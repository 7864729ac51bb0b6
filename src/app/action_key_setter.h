#pragma once

#include "app/action_argument.h"
#include "app/outlets.h"
#include "app/unsaved_edits.h"
#include "app/window_closer.h"
#include "profiles/action_key_map.h"

namespace glimra::app {

/// The window in which the action-bar slots are bound to keys. A choice counts at once, OK keeps it for good,
/// Cancel takes all of them back. Main thread.
class ActionKeySetter {
public:
    struct Parts {
        platform::UserDefaults& defaults;
        Outlets& outlets;
        UnsavedEdits& unsavedEdits;
        WindowCloser& closer;
        profiles::ProfileStore& store;
        profiles::ProfileState& profile;
        profiles::CanvasBuffer& canvas;
        const lighting::LightingState& lightingState;
        profiles::ActionKeyMap& keys;
        /// The thirty keys as they were when the window was opened; empty until then.
        std::vector<lighting::KeyCode>& saveActionBarKeyMap;
    };

    explicit ActionKeySetter(const Parts& parts);

    /// Takes the thirty menus of the window, in the order of `actionSlots()`.
    void fillKeyMenusArray();

    void openWindowToMapKeys();
    /// The user has chosen an item in the menu of a slot, by its number (101 to 612). A title that names no
    /// key changes nothing.
    void actionKeyMenuClick(const ItemTitle& item, int number);
    void actionKeySetterOK();
    void actionKeySetterCanx();

private:
    void fillMenus();

    Parts m_parts;
    std::vector<platform::PopUp*> keyMenusArray;
};

} // namespace glimra::app
