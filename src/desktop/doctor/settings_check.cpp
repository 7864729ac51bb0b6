#include "desktop/doctor/checks.h"

#include "desktop/settings_backups.h"
#include "desktop/settings_file.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace glimra::desktop::doctor {

namespace {

/// Whether a file can be made, or replaced, there.
bool canBeWritten(const QFileInfo& file) {
    QFileInfo folder(file.absolutePath());
    while (!folder.exists() && !folder.isRoot())
        folder = QFileInfo(folder.absolutePath());
    return folder.isDir() && folder.isWritable() && (!file.exists() || file.isFile());
}

Finding finding(const QFileInfo& file) {
    Finding found{.check = "settings", .text = "The settings are in " + file.filePath().toStdString() + "."};
    found.details["file"] = file.filePath().toStdString();
    QFile content(file.filePath());
    if (!canBeWritten(file)) {
        found.health = Health::Limited;
        found.text += " That file can't be written.";
        found.remedy = "Make the folder yours, or name another file with --settings.";
    } else if (!file.exists()) {
        found.text += " There are none yet.";
    } else if (!content.open(QIODevice::ReadOnly)) {
        found.health = Health::Limited;
        found.text += " That file can't be read.";
        found.remedy = "Make the file yours.";
    } else if (soundnessOf(content.readAll()) == Soundness::Damaged) {
        found.health = Health::Limited;
        found.text +=
            " Parts of it can't be read: the next start sets it aside and uses the newest good copy.";
    }
    return found;
}

} // namespace

struct SettingsCopy::Parts {
    explicit Parts(const QString& path) : original(path) {
        QFile::copy(path, folder.filePath("settings.ini"));
        settings.emplace(folder.filePath("settings.ini"), log);
    }

    QFileInfo original;
    QTemporaryDir folder;
    SilentLog log;
    std::optional<SettingsFile> settings;
};

SettingsCopy::SettingsCopy(const Options& options)
    : m_parts(std::make_unique<Parts>(options.settingsFile ? QString::fromStdString(*options.settingsFile)
                                                           : SettingsFile::defaultPath())) {
}

SettingsCopy::~SettingsCopy() = default;

const platform::UserDefaults& SettingsCopy::values() const {
    return *m_parts->settings;
}

Findings SettingsCopy::findings() const {
    return {finding(m_parts->original)};
}

} // namespace glimra::desktop::doctor
