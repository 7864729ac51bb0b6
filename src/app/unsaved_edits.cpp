#include "app/unsaved_edits.h"

namespace glimra::app {

namespace {

// Tags of the alert's buttons; any other means to go on editing.
constexpr int kSave = 1;
constexpr int kDiscard = 2;

} // namespace

UnsavedEdits::UnsavedEdits(platform::WindowSystem& windows, Outlets& outlets, profiles::ProfileStore& store,
                           profiles::ProfileState& profile)
    : m_windows(windows),
      m_outlets(outlets),
      m_store(store),
      m_profile(profile) {
}

bool UnsavedEdits::settle() {
    if (!m_profile.profileTouched)
        return true;
    const int answer = m_windows.runModal(m_outlets.profileChangeAlert);
    m_outlets.profileChangeAlert.visible.set(false);
    if (answer == kSave)
        m_store.saveProfile(m_profile.activeColorProfile);
    return answer == kSave || answer == kDiscard;
}

void UnsavedEdits::settleEdits() {
    if (settle())
        m_profile.profileTouched = false;
}

void UnsavedEdits::profileChangeAnswer(const ButtonTag& button) {
    m_windows.stopModal(button.tag);
}

} // namespace glimra::app
