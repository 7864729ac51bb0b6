#include "desktop/settings/settings_file.h"

#include "desktop/settings/config_folder.h"
#include "desktop/settings/settings_backups.h"
#include "desktop/settings/stored_value_text.h"

#include <QFile>
#include <QFileInfo>

#include <utility>

namespace glimra::desktop {

using platform::StoredValue;

namespace {

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Qt locks a file for each save by a lock file, removes stale locks under a second lock file, and so on. A
/// program killed during this may leave lock files for which Qt would wait forever.
void removeGuards(const QString& path) {
    constexpr int kMostGuards = 5;
    QString guard = path + ".lock";
    for (int number = 0; number < kMostGuards; ++number, guard += ".rmlock")
        QFile::remove(guard);
}

/// Makes the file readable and writable; returns what had to be mended.
std::string prepare(const QString& path, platform::SystemLog& systemLog) {
    removeGuards(path);
    return mendSettings(path, systemLog);
}

} // namespace

SettingsFile::SettingsFile(const QString& path, platform::SystemLog& systemLog)
    : m_systemLog(systemLog),
      m_mending(prepare(path, systemLog)),
      m_settings(path, QSettings::IniFormat) {
    keepCopy(path);
}

SettingsFile::~SettingsFile() {
    write();
}

void SettingsFile::write() {
    save();
    keepCopy(m_settings.fileName());
}

QString SettingsFile::defaultPath() {
    return configFolder() + "/glimra.ini";
}

QString SettingsFile::folder() const {
    return QFileInfo(m_settings.fileName()).absolutePath();
}

std::optional<StoredValue> SettingsFile::get(std::string_view key) const {
    return read(toQString(key));
}

std::optional<StoredValue> SettingsFile::read(const QString& key) const {
    if (!m_settings.contains(key))
        return std::nullopt;
    // Qt reads hand-written text with a comma as a list.
    const QString text = m_settings.value(key).toStringList().join(',');
    std::optional<StoredValue> value = storedValueFromText(text.toStdString());
    if (!value && m_reportedKeys.insert(key).second)
        m_systemLog.write("Settings: the value of \"" + key.toStdString() +
                          "\" can't be read and is ignored");
    return value;
}

void SettingsFile::set(std::string_view key, StoredValue value) {
    m_settings.setValue(kEndMark, "true");
    m_settings.setValue(toQString(key), toQString(toText(value)));
    if (m_saveIsPending)
        return;
    m_saveIsPending = true;
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (const std::string problem = save(); !problem.empty())
                told.emit(problem);
        },
        Qt::QueuedConnection);
}

std::map<std::string, StoredValue, std::less<>> SettingsFile::all() const {
    std::map<std::string, StoredValue, std::less<>> values;
    for (const QString& key : m_settings.allKeys())
        if (std::optional<StoredValue> value = key == kEndMark ? std::nullopt : read(key))
            values.emplace(key.toStdString(), std::move(*value));
    return values;
}

std::string SettingsFile::save() {
    const bool wasPending = std::exchange(m_saveIsPending, false);
    m_settings.sync();
    // Qt reports success also when a full disk has cut the file off.
    const bool isWritten =
        m_settings.status() != QSettings::AccessError && (!wasPending || isSound(m_settings.fileName()));
    if (isWritten || m_reportedWriteFailure)
        return {};
    m_reportedWriteFailure = true;
    std::string problem = "Settings: can't write " + m_settings.fileName().toStdString();
    m_systemLog.write(problem);
    return problem;
}

} // namespace glimra::desktop
