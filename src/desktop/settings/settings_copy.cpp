#include "desktop/settings/settings_copy.h"

#include "desktop/settings/settings_backups.h"

#include <QFile>

namespace glimra::desktop {

SettingsCopy::SettingsCopy(const QString& original) : m_original(original) {
    const QString file = m_folder.filePath("settings.ini");
    QFile::copy(m_original, file);
    for (int number = 1; number <= kCopies; ++number) {
        QFile::copy(copyName(m_original, number), copyName(file, number));
        m_hasBackup = m_hasBackup || isSound(copyName(file, number));
    }
    m_settings.emplace(file, m_log);
}

} // namespace glimra::desktop
