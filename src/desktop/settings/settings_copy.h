#pragma once

#include "desktop/settings/settings_file.h"
#include "platform/silent_log.h"

#include <QString>
#include <QTemporaryDir>

#include <optional>

namespace glimra::desktop {

/// The settings as the application would use them, read from a copy of the file. For code that only looks at
/// them while another Glimra may be using the original.
class SettingsCopy {
public:
    explicit SettingsCopy(const QString& original);

    const platform::UserDefaults& values() const { return *m_settings; }
    /// The file that was copied.
    const QString& original() const { return m_original; }
    /// Whether the file had to be mended.
    bool isMended() const { return !m_settings->mending().empty(); }
    /// Whether there is a sound copy beside it.
    bool hasBackup() const { return m_hasBackup; }

private:
    QString m_original;
    QTemporaryDir m_folder;
    platform::SilentLog m_log;
    bool m_hasBackup = false;
    std::optional<SettingsFile> m_settings;
};

} // namespace glimra::desktop
