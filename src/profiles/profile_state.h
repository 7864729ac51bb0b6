#pragma once

namespace glimra::profiles {

/// Which profile is in use; numbers run from 1 to 9.
struct ProfileState {
    /// On the keyboard now.
    int activeColorProfile = 1;
    /// To go back to when the chat box closes.
    int chatReturnColorProfile = 1;
    /// The canvas holds colour edits that are not saved.
    bool profileTouched = false;
};

} // namespace glimra::profiles
