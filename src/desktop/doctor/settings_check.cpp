#include "desktop/doctor/checks.h"

#include <QFileInfo>

namespace glimra::desktop::doctor {

namespace {

/// Whether the file can be created or replaced.
bool canBeWritten(const QFileInfo& file) {
    QFileInfo folder(file.absolutePath());
    while (!folder.exists() && !folder.isRoot())
        folder = QFileInfo(folder.absolutePath());
    return folder.isDir() && folder.isWritable() && (!file.exists() || file.isFile());
}

/// `isMended` means that the file could not be used as it is; the finding says what the next start will do
/// with it.
Finding finding(const QFileInfo& file, bool isMended, bool hasCopy) {
    Finding found{.check = "settings", .text = "The settings are in " + file.filePath().toStdString() + "."};
    found.details["file"] = file.filePath().toStdString();
    if (!canBeWritten(file)) {
        found.health = Health::Limited;
        found.text += " That file can't be written.";
        found.remedy = "Make the folder yours, or name another file with --settings.";
    } else if (!file.exists()) {
        found.text += " There are none yet.";
    } else if (!file.isReadable()) {
        found.health = Health::Limited;
        found.text += " That file can't be read.";
        found.remedy = "Make the file yours.";
    } else if (isMended) {
        found.health = Health::Limited;
        found.text += hasCopy
                          ? " Parts of it can't be read: the next start sets it aside and uses the newest "
                            "good copy."
                          : " Parts of it can't be read, and there is no good copy: the next start uses it "
                            "as far as it goes.";
    }
    return found;
}

} // namespace

Findings checkSettings(const SettingsCopy& settings) {
    return {finding(QFileInfo(settings.original()), settings.isMended(), settings.hasBackup())};
}

} // namespace glimra::desktop::doctor
