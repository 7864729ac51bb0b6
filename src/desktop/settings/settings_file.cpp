#include "desktop/settings/settings_file.h"

#include "desktop/settings/config_folder.h"

#include <QFileInfo>

#include <utility>

namespace glimra::desktop {

using platform::StoredValue;

SettingsFile::SettingsFile(const QString& path, platform::SystemLog& systemLog)
    : SettingsFile(path, findSettings(path), systemLog) {
}

SettingsFile::SettingsFile(const QString& path, const FoundSettings& found, platform::SystemLog& systemLog)
    : m_path(path),
      m_systemLog(systemLog),
      m_values(found.values, systemLog),
      m_mending(mendSettings(path, found, systemLog)),
      m_isSound(found.isWhole()) {
    if (m_isSound)
        keepCopy(m_path, m_values.texts());
}

SettingsFile::~SettingsFile() {
    write();
}

void SettingsFile::write() {
    save();
    if (m_isSound && m_changedKeys.empty())
        keepCopy(m_path, m_values.texts());
}

std::string SettingsFile::reload() {
    save();
    if (!m_changedKeys.empty())
        return "The settings cannot be written: " + m_path.toStdString();
    StoredSettings stored = readSettings(m_path);
    if (!stored.isSound())
        return "The settings cannot be read, or are not complete: " + m_path.toStdString();
    m_values.replace(std::move(stored.parsed.values));
    m_isSound = true;
    keepCopy(m_path, m_values.texts());
    return {};
}

QString SettingsFile::defaultPath() {
    return configFolder() + "/glimra.ini";
}

QString SettingsFile::folder() const {
    return QFileInfo(m_path).absolutePath();
}

void SettingsFile::set(std::string_view key, StoredValue value) {
    m_values.set(key, std::move(value));
    m_changedKeys.emplace(key);
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

bool SettingsFile::writeChanges() {
    const FolderLock lock(m_path);
    StoredSettings stored = readSettings(m_path);
    if (stored.state == FileState::Unreadable)
        return false;
    SettingsText texts = m_values.texts();
    if (stored.isSound())
        texts = std::move(stored.parsed.values);
    for (const std::string& key : m_changedKeys)
        texts.insert_or_assign(key, m_values.texts().find(key)->second);
    if (!writeSettings(m_path, texts))
        return false;
    m_values.replace(std::move(texts));
    m_changedKeys.clear();
    m_isSound = true;
    return true;
}

std::string SettingsFile::save() {
    m_saveIsPending = false;
    if (m_changedKeys.empty() || writeChanges() || std::exchange(m_reportedWriteFailure, true))
        return {};
    std::string problem = "Settings: can't write " + m_path.toStdString();
    m_systemLog.write(problem);
    return problem;
}

} // namespace glimra::desktop
