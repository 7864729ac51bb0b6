#include "desktop/settings/settings_backups.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <utility>

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace glimra::desktop {

namespace {

constexpr int kMostSetAside = 99;

QString copyName(const QString& path, int number) {
    return path + "." + QString::number(number);
}

/// A free name beside the file; the last candidate when all are taken.
QString nameForDamaged(const QString& path) {
    QString name = path + ".damaged";
    for (int number = 2; QFile::exists(name) && number <= kMostSetAside; ++number)
        name = path + ".damaged-" + QString::number(number);
    return name;
}

/// Where the disk allows it, the file stays in its place, too, until another one replaces it.
bool setAside(const QString& path, const QString& aside) {
    const QByteArray from = QFile::encodeName(path);
    const QByteArray to = QFile::encodeName(aside);
    return ::linkat(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), AT_SYMLINK_FOLLOW) == 0 ||
           std::rename(from.constData(), to.constData()) == 0;
}

std::string faultOf(const FoundSettings& found, const std::string& path) {
    return found.state == FileState::TooBig
               ? path + " is larger than " + std::to_string(kMostSettingsBytes >> 20) + " MiB and is not read"
               : "parts of " + path + " can't be read";
}

std::string substitute(const FoundSettings& found, const QString& path) {
    if (found.copy)
        return "the settings of " +
               QFileInfo(copyName(path, *found.copy)).lastModified().toString(Qt::ISODate).toStdString() +
               " are used in its place";
    return found.state == FileState::TooBig ? "there is no good copy of it" : "it is used as far as it goes";
}

} // namespace

bool FoundSettings::needsMending() const {
    if (state != FileState::Read)
        return state == FileState::TooBig;
    // A file with neither a mark nor copies was written before copies existed, or by somebody's hand.
    return soundness == Soundness::Damaged || (soundness == Soundness::CutOff && copy.has_value());
}

bool FoundSettings::isWhole() const {
    return (state == FileState::Read && soundness == Soundness::Sound) ||
           (needsMending() && copy.has_value());
}

FoundSettings findSettings(const QString& path) {
    StoredSettings file = readSettings(path);
    FoundSettings found{
        .state = file.state, .soundness = file.parsed.soundness, .values = std::move(file.parsed.values)};
    if (found.isWhole())
        return found;
    for (int number = 1; number <= kCopies && !found.copy; ++number) {
        StoredSettings copy = readSettings(copyName(path, number));
        if (!copy.isSound())
            continue;
        found.copy = number;
        if (found.needsMending())
            found.values = std::move(copy.parsed.values);
    }
    return found;
}

std::string mendSettings(const QString& path, const FoundSettings& found, platform::SystemLog& systemLog) {
    std::string line;
    if (found.state == FileState::Unreadable) {
        line = "Settings: " + path.toStdString() + " can't be read; nothing will be kept";
    } else if (found.needsMending()) {
        const QString aside = nameForDamaged(path);
        const bool isKept = setAside(path, aside);
        if (isKept)
            writeSettings(path, found.values);
        line = "Settings: " + faultOf(found, path.toStdString()) +
               (isKept ? "; it is kept as " + aside.toStdString() : "; it can't be set aside") + ", and " +
               substitute(found, path);
    }
    if (!line.empty())
        systemLog.write(line);
    return line;
}

void keepCopy(const QString& path, const SettingsText& values) {
    const StoredSettings newest = readSettings(copyName(path, 1));
    if (newest.isSound() && newest.parsed.values == values)
        return;
    // The new copy is written first: if the disk is full, the older ones must stay.
    if (!writeSettings(copyName(path, 0), values))
        return;
    // Renames from the oldest on, so only the oldest copy is overwritten. A gap in the numbers, left by a run
    // that was killed here, is filled, and then no copy is lost.
    int last = 1;
    while (last < kCopies && QFile::exists(copyName(path, last)))
        ++last;
    for (int number = last; number > 0; --number)
        std::rename(QFile::encodeName(copyName(path, number - 1)).constData(),
                    QFile::encodeName(copyName(path, number)).constData());
}

} // namespace glimra::desktop
