#include "desktop/settings/config_folder.h"

#include <QByteArray>
#include <QFile>
#include <QStandardPaths>

#include <filesystem>
#include <system_error>

#include <fcntl.h>

namespace glimra::desktop {

namespace {

QString findConfigFolder() {
    QString usual = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/glimra";
    QByteArray base = qgetenv("XDG_CONFIG_HOME");
    if (!base.startsWith('/'))
        base = qgetenv("HOME") + "/.config";
    if (QFile::encodeName(QFile::decodeName(base)) == base)
        return usual;
    const std::filesystem::path folder = std::filesystem::path(base.toStdString()) / "glimra";
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    // Open as long as the program runs.
    const int descriptor = ::open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    return descriptor < 0 ? usual : "/proc/self/fd/" + QString::number(descriptor);
}

} // namespace

QString configFolder() {
    static const QString folder = findConfigFolder();
    return folder;
}

} // namespace glimra::desktop
