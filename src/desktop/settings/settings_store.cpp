#include "desktop/settings/settings_store.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <chrono>
#include <thread>

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace glimra::desktop {

StoredSettings readSettings(const QString& path) {
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return {errno == ENOENT || errno == ENOTDIR ? FileState::Missing : FileState::Unreadable};
    QFile file;
    struct stat status {};
    if (!file.open(descriptor, QIODevice::ReadOnly, QFile::AutoCloseHandle) ||
        ::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return {FileState::Unreadable};
    const QByteArray content = file.read(kMostSettingsBytes + 1);
    if (content.size() > kMostSettingsBytes)
        return {FileState::TooBig};
    if (file.error() != QFile::NoError)
        return {FileState::Unreadable};
    return {FileState::Read, parseSettings(content)};
}

bool writeSettings(const QString& path, const SettingsText& values) {
    const QFileInfo place(path);
    const QString target = place.isSymLink() && place.exists() ? place.canonicalFilePath() : path;
    QDir().mkpath(QFileInfo(target).absolutePath());
    const QByteArray content = formatSettings(values);
    // Such a file is its owner's alone from the beginning.
    QTemporaryFile file(target + ".XXXXXX");
    // On the disk before it takes the old one's place: a full disk may say so only then.
    if (!file.open() || file.write(content) != content.size() || !file.flush() || ::fsync(file.handle()) != 0)
        return false;
    const QByteArray name = QFile::encodeName(file.fileName());
    if (std::rename(name.constData(), QFile::encodeName(target).constData()) != 0)
        return false;
    file.setAutoRemove(false);
    return true;
}

FolderLock::FolderLock(const QString& path)
    : m_folder(::open(QFile::encodeName(QFileInfo(path).absolutePath()).constData(),
                      O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    constexpr int kMostTries = 200;
    constexpr std::chrono::milliseconds kPause{10};
    for (int tries = 0; tries < kMostTries && ::flock(m_folder, LOCK_EX | LOCK_NB) != 0; ++tries) {
        if (errno != EWOULDBLOCK && errno != EINTR)
            return;
        std::this_thread::sleep_for(kPause);
    }
}

FolderLock::~FolderLock() {
    if (m_folder >= 0)
        ::close(m_folder);
}

} // namespace glimra::desktop
