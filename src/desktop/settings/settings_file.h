#pragma once

#include "platform/controls.h"
#include "platform/system_services.h"
#include "platform/user_defaults.h"

#include <QObject>
#include <QSettings>
#include <QString>

#include <set>
#include <string>

namespace glimra::desktop {

/// The settings in an INI file, each value in the form of stored_value_text.h. A change is written when the
/// event loop comes round, and at the latest when the object goes; the file is replaced as a whole.
///
/// A value that cannot be read counts as absent and is said once in the system log. Copies of the file are
/// kept, and take its place when it is damaged: settings_backups.h. One object at a time for each file. Main
/// thread.
class SettingsFile final : public QObject, public platform::UserDefaults {
public:
    SettingsFile(const QString& path, platform::SystemLog& systemLog);
    ~SettingsFile() override;

    /// Where the settings are kept when nobody says otherwise, in the XDG configuration folder.
    static QString defaultPath();

    /// What had to be mended before the settings could be read, a line for the log; empty when nothing had.
    const std::string& mending() const { return m_mending; }
    /// That they can't be written, a line for the log, once; not while the object goes.
    platform::Signal<std::string_view> told;

    /// The folder that the file is in; it may not be there yet.
    QString folder() const;

    std::optional<platform::StoredValue> get(std::string_view key) const override;
    void set(std::string_view key, platform::StoredValue value) override;
    std::map<std::string, platform::StoredValue, std::less<>> all() const override;

    /// Writes what has changed, and keeps a copy of it, now.
    void write();

private:
    std::optional<platform::StoredValue> read(const QString& key) const;
    /// Returns what went wrong, the first time; else nothing.
    std::string save();

    platform::SystemLog& m_systemLog;
    std::string m_mending;
    QSettings m_settings;
    mutable std::set<QString> m_reportedKeys;
    bool m_saveIsPending = false;
    bool m_reportedWriteFailure = false;
};

} // namespace glimra::desktop
