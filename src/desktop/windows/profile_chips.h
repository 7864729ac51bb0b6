#pragma once

#include "desktop/windows/profile_names.h"
#include "desktop/windows/program_watch.h"
#include "desktop/windows/quiet_button.h"

#include <array>

namespace glimra::desktop {

/// The nine profiles as chips: the one that the keyboard shows is filled, whoever has switched to it. A click
/// or Ctrl+Shift and the number switches; a double click, F2 or the context menu names a profile.
class ProfileChips final : public QObject {
public:
    /// Makes the chips in `container`, to be bound like a designer's buttons.
    ProfileChips(QWidget* container, ProfileNames& names);

    /// Shows what is seen from now on.
    void follow(ProgramWatch& watch);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QuietButton* chip(int profile) const { return m_chips[static_cast<std::size_t>(profile) - 1]; }
    void show();
    void offerRenaming(int profile, const QPoint& place);
    void rename(int profile);

    QWidget* m_container;
    ProfileNames& m_names;
    const ProgramWatch* m_watch = nullptr;
    std::array<QuietButton*, lighting::kProfileCount> m_chips{};
};

} // namespace glimra::desktop
