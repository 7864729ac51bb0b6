#pragma once

#include "app/app_delegate.h"
#include "platform/user_defaults.h"

#include <QWidget>

namespace glimra::desktop {

/// What the thirteen colours of the painter are called: "color A, cyan", with the player's own name for it
/// where there is one. Own names are settings beside the stored profiles, one for each profile and colour.
/// Main thread.
class SwatchNames {
public:
    SwatchNames(QWidget* painter, app::AppDelegate& delegate, platform::UserDefaults& userDefaults);

    /// Empty for a slot that does not exist.
    QString nameOfSlot(int slot) const;
    /// Names the swatches and their pencils anew; their profile or the colours may have changed.
    void show();

private:
    /// Tags are those of the wells, 0 for the cooldown colour's.
    QString nameOf(int tag) const;
    std::string keyOfOwnName(int tag) const;

    QWidget* m_painter;
    app::AppDelegate& m_delegate;
    platform::UserDefaults& m_userDefaults;
};

} // namespace glimra::desktop
