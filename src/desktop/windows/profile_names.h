#pragma once

#include "platform/controls.h"
#include "platform/user_defaults.h"

#include <QString>

namespace glimra::desktop {

/// The names that a player gives to the nine profiles. They are settings of their own: neither a stored
/// profile nor a profile file has them. Profile numbers run from 1 to 9. Main thread.
class ProfileNames {
public:
    static constexpr int kLongest = 24;

    explicit ProfileNames(platform::UserDefaults& userDefaults) : m_userDefaults(userDefaults) {}

    /// Empty for a profile without a name.
    QString name(int profile) const;
    /// Stored at once; blanks around it and what is too long are cut off.
    void setName(int profile, const QString& name);
    /// "2 Away", or "2".
    QString title(int profile) const;

    platform::Signal<> changed;

private:
    platform::UserDefaults& m_userDefaults;
};

} // namespace glimra::desktop
