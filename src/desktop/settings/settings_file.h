#pragma once

#include "desktop/settings/settings_backups.h"
#include "desktop/settings/settings_values.h"
#include "platform/controls.h"

#include <QObject>
#include <QString>

#include <set>
#include <string>

namespace glimra::desktop {

/// The settings in an INI file. Changes are written by the event loop, and at the latest by the destructor;
/// the file is replaced as a whole, and what somebody else has changed in it meanwhile stays.
///
/// Copies of the file are kept and replace it when it is damaged (settings_backups.h). Only one object per
/// file at a time. Main thread.
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

    std::optional<platform::StoredValue> get(std::string_view key) const override {
        return m_values.get(key);
    }
    void set(std::string_view key, platform::StoredValue value) override;
    std::map<std::string, platform::StoredValue, std::less<>> all() const override { return m_values.all(); }

    /// Writes what has changed, and keeps a copy of it, now.
    void write();
    /// Takes what somebody else has changed in the file, after writing what has changed here. Returns why
    /// that is not possible, as a sentence; then nothing is taken.
    std::string reload();

private:
    SettingsFile(const QString& path, const FoundSettings& found, platform::SystemLog& systemLog);

    bool writeChanges();
    /// Returns the error the first time that saving fails; otherwise nothing.
    std::string save();

    QString m_path;
    platform::SystemLog& m_systemLog;
    SettingsValues m_values;
    std::string m_mending;
    /// Since the file was last written.
    std::set<std::string, std::less<>> m_changedKeys;
    /// Whether the values, but for the changed ones, are all that was ever stored: worth a copy.
    bool m_isSound;
    bool m_saveIsPending = false;
    bool m_reportedWriteFailure = false;
};

} // namespace glimra::desktop
