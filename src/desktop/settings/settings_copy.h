#pragma once

#include "desktop/settings/settings_backups.h"
#include "desktop/settings/settings_values.h"
#include "platform/silent_log.h"

#include <QString>

namespace glimra::desktop {

/// The settings as the application would use them, without changing the file. For code that only looks at
/// them while another Glimra may be using it.
class SettingsCopy {
public:
    explicit SettingsCopy(const QString& original)
        : m_original(original),
          m_found(findSettings(original)),
          m_values(m_found.values, m_log) {}

    const platform::UserDefaults& values() const { return m_values; }
    /// The file that was read.
    const QString& original() const { return m_original; }
    /// Whether the file has to be mended.
    bool isMended() const { return m_found.needsMending(); }
    /// Whether there is a sound copy beside it.
    bool hasBackup() const { return m_found.copy.has_value(); }

private:
    QString m_original;
    FoundSettings m_found;
    platform::SilentLog m_log;
    SettingsValues m_values;
};

} // namespace glimra::desktop
