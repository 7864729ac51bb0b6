#include "desktop/settings_copy.h"

#include "desktop/settings_backups.h"

#include <QFile>

namespace glimra::desktop {

SettingsCopy::SettingsCopy(const Options& options)
    : m_original(options.settingsFile ? QString::fromStdString(*options.settingsFile)
                                      : SettingsFile::defaultPath()) {
    const QString file = m_folder.filePath("settings.ini");
    QFile::copy(m_original, file);
    for (int number = 1; number <= kCopies; ++number) {
        QFile::copy(copyName(m_original, number), copyName(file, number));
        m_hasBackup = m_hasBackup || isSound(copyName(file, number));
    }
    m_settings.emplace(file, m_log);
}

} // namespace glimra::desktop
