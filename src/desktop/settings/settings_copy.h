#pragma once

#include "desktop/settings/settings_file.h"
#include "platform/silent_log.h"

#include <QString>
#include <QTemporaryDir>

#include <optional>

namespace glimra::desktop {

/// The settings as they would be used, read from a copy: for whoever only looks, while another Glimra may be
/// running with them.
class SettingsCopy {
public:
    explicit SettingsCopy(const QString& original);

    const platform::UserDefaults& values() const { return *m_settings; }
    /// The file that was copied.
    const QString& original() const { return m_original; }
    /// It could not be used as it is.
    bool isMended() const { return !m_settings->mending().empty(); }
    /// There is a good copy beside it.
    bool hasBackup() const { return m_hasBackup; }

private:
    QString m_original;
    QTemporaryDir m_folder;
    platform::SilentLog m_log;
    bool m_hasBackup = false;
    std::optional<SettingsFile> m_settings;
};

} // namespace glimra::desktop
