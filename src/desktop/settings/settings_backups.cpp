#include "desktop/settings/settings_backups.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <optional>

#include <cstdio>

namespace glimra::desktop {

namespace {

constexpr int kMostSetAside = 99;
/// Real settings take about ten kilobytes.
constexpr qint64 kMostBytes = qint64{16} << 20;

std::optional<QByteArray> contentOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kMostBytes)
        return std::nullopt;
    return file.readAll();
}

bool write(const QString& path, const QByteArray& content) {
    QSaveFile file(path);
    // Flushed before the commit, which would not report that a full disk has lost the rest of the buffer.
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() &&
           file.commit();
}

bool isLineOfSettings(const QByteArray& line) {
    const QByteArray text = line.trimmed();
    return text.isEmpty() || text.startsWith(';') || text.contains('=') ||
           (text.startsWith('[') && text.endsWith(']'));
}

std::optional<int> newestSoundCopy(const QString& path) {
    for (int number = 1; number <= kCopies; ++number)
        if (isSound(copyName(path, number)))
            return number;
    return std::nullopt;
}

/// A free name beside the file; the last candidate when all are taken.
QString nameForDamaged(const QString& path) {
    QString name = path + ".damaged";
    for (int number = 2; QFile::exists(name) && number <= kMostSetAside; ++number)
        name = path + ".damaged-" + QString::number(number);
    return name;
}

} // namespace

QString copyName(const QString& path, int number) {
    return path + "." + QString::number(number);
}

Soundness soundnessOf(const QByteArray& content) {
    const QList<QByteArray> lines = content.split('\n');
    if (!std::all_of(lines.begin(), lines.end(), isLineOfSettings))
        return Soundness::Damaged;
    return content.contains("\ncomplete=true\n") ? Soundness::Sound : Soundness::CutOff;
}

bool isSound(const QString& path) {
    const std::optional<QByteArray> content = contentOf(path);
    return content && soundnessOf(*content) == Soundness::Sound;
}

std::string mendSettings(const QString& path, platform::SystemLog& systemLog) {
    const std::optional<QByteArray> content = contentOf(path);
    if (!content)
        return {};
    const Soundness soundness = soundnessOf(*content);
    const std::optional<int> copy = newestSoundCopy(path);
    // A file with neither a mark nor copies was written before copies existed, or by somebody's hand.
    if (soundness == Soundness::Sound || (soundness == Soundness::CutOff && !copy))
        return {};
    const QString aside = nameForDamaged(path);
    std::string line = "Settings: parts of " + path.toStdString() + " can't be read";
    if (!write(aside, *content))
        line += "; it can't be set aside and is used as far as it goes";
    else if (copy && write(path, contentOf(copyName(path, *copy)).value_or(*content)))
        line += "; it is kept as " + aside.toStdString() + ", and the settings of " +
                QFileInfo(copyName(path, *copy)).lastModified().toString(Qt::ISODate).toStdString() +
                " are used in its place";
    else
        line += "; it is used as far as it goes, and the whole file is kept as " + aside.toStdString();
    systemLog.write(line);
    return line;
}

void keepCopy(const QString& path) {
    const std::optional<QByteArray> content = contentOf(path);
    if (!content || soundnessOf(*content) != Soundness::Sound || content == contentOf(copyName(path, 1)))
        return;
    // The new copy is written first: if the disk is full, the older ones must stay.
    if (!write(copyName(path, 0), *content))
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
