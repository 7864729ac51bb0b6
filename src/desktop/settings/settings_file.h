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

/// The settings in an INI file; the form of the values is in stored_value_text.h. Changes are written by the
/// event loop, and at the latest by the destructor; the file is replaced as a whole.
///
/// An unreadable value counts as absent and is reported once to the system log. Copies of the file are kept
/// and replace it when it is damaged (settings_backups.h). Only one object per file at a time. Main thread.
class SettingsFile final : public QObject, public platform::UserDefaults {
public:
    SettingsFile(const QString& path, platform::SystemLog& systemLog);
    ~SettingsFile() override;

    /// The path used by default, in the XDG configuration folder.
    static QString defaultPath();

    /// What had to be mended before the settings could be read, as a line for the log; empty when nothing
    /// had.
    const std::string& mending() const { return m_mending; }
    /// Emits, once, a line for the log when the settings cannot be written; not during destruction.
    platform::Signal<std::string_view> told;

    /// The folder of the file; it may not exist yet.
    QString folder() const;

    std::optional<platform::StoredValue> get(std::string_view key) const override;
    void set(std::string_view key, platform::StoredValue value) override;
    std::map<std::string, platform::StoredValue, std::less<>> all() const override;

    /// Writes what has changed, and keeps a copy of it, now.
    void write();

private:
    std::optional<platform::StoredValue> read(const QString& key) const;
    /// Returns the error the first time that saving fails; otherwise nothing.
    std::string save();

    platform::SystemLog& m_systemLog;
    std::string m_mending;
    QSettings m_settings;
    mutable std::set<QString> m_reportedKeys;
    bool m_saveIsPending = false;
    bool m_reportedWriteFailure = false;
};

} // namespace glimra::desktop
