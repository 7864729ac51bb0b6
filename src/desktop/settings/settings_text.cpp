#include "desktop/settings/settings_text.h"

#include <QString>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace glimra::desktop {

namespace {

constexpr std::string_view kEscapedNames = "abfnrtv\"\\";
constexpr std::string_view kEscapedCharacters = "\a\b\f\n\r\t\v\"\\";
/// Stands for the section of keys without one; a section of that very name is escaped.
constexpr const char* kNoSection = "General";
constexpr const char* kSectionNamedSo = "%General";

bool isNamedGeneral(const QByteArray& section) {
    return section.compare(kNoSection, Qt::CaseInsensitive) == 0;
}

std::optional<int> digitOf(char character, int base) {
    const int digit = character >= '0' && character <= '9'   ? character - '0'
                      : character >= 'a' && character <= 'f' ? character - 'a' + 10
                      : character >= 'A' && character <= 'F' ? character - 'A' + 10
                                                             : base;
    return digit < base ? std::optional(digit) : std::nullopt;
}

/// Reads at most `mostDigits` from `at` on, and moves `at` behind them.
char16_t unitAt(const QByteArray& raw, qsizetype& at, int base, int mostDigits) {
    unsigned unit = 0;
    for (int count = 0; count < mostDigits && at < raw.size(); ++count, ++at) {
        const std::optional<int> digit = digitOf(raw[at], base);
        if (!digit)
            break;
        unit = (unit * static_cast<unsigned>(base) + static_cast<unsigned>(*digit)) & 0xFFFFU;
    }
    return static_cast<char16_t>(unit);
}

/// What a backslash and the characters after it stand for, if for anything; `at` is moved behind them.
std::optional<QChar> escapedAt(const QByteArray& raw, qsizetype& at) {
    constexpr int kAnyNumber = 64;
    if (at == raw.size())
        return std::nullopt;
    const char name = raw[at];
    if (digitOf(name, 8))
        return QChar(unitAt(raw, at, 8, kAnyNumber));
    ++at;
    if (name == 'x')
        return QChar(unitAt(raw, at, 16, kAnyNumber));
    const std::size_t found = kEscapedNames.find(name);
    return found == std::string_view::npos ? std::nullopt
                                           : std::optional<QChar>(QLatin1Char(kEscapedCharacters[found]));
}

/// A value: in quotes or without blanks around it, with escapes, up to a comment.
std::string valueFrom(const QByteArray& raw) {
    QString text;
    /// Blanks outside quotes; they count only in front of something else.
    QString blanks;
    bool isQuoted = false;
    const auto add = [&](const auto& more) {
        if (!text.isEmpty())
            text += blanks;
        blanks.clear();
        text += more;
    };
    for (qsizetype at = 0; at < raw.size();) {
        const char character = raw[at];
        if (character == ';' && !isQuoted)
            break;
        if (character == '"' || character == '\\' || (!isQuoted && (character == ' ' || character == '\t'))) {
            ++at;
            if (character == '"')
                isQuoted = !isQuoted;
            else if (character != '\\')
                blanks += QLatin1Char(character);
            else if (const std::optional<QChar> escaped = escapedAt(raw, at))
                add(*escaped);
            continue;
        }
        const auto* const end = std::find_if(raw.begin() + at, raw.end(), [isQuoted](char each) {
            return each == '"' || each == '\\' || (!isQuoted && (each == ';' || each == ' ' || each == '\t'));
        });
        const qsizetype length = end - raw.begin() - at;
        add(QString::fromUtf8(raw.sliced(at, length)));
        at += length;
    }
    // QSettings marked a text with a zero in it.
    if (text.startsWith(QLatin1String("@String(")) && text.endsWith(QLatin1Char(')')))
        text = text.sliced(8).chopped(1);
    return text.toStdString();
}

QByteArray rawValue(const std::string& value) {
    const QByteArray text = QByteArray::fromStdString(value);
    QByteArray raw;
    bool isAfterNumber = false;
    for (const char character : text) {
        const bool isControl = static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
        const std::size_t name = kEscapedCharacters.find(character);
        const bool wasNumber = std::exchange(isAfterNumber, false);
        if (name != std::string_view::npos) {
            raw += '\\';
            raw += kEscapedNames[name];
        } else if (isControl || (wasNumber && digitOf(character, 16))) {
            raw += "\\x" + QByteArray::number(static_cast<int>(character), 16);
            isAfterNumber = true;
        } else {
            raw += character;
        }
    }
    const bool needsQuotes = raw.contains(';') || raw.contains(',') || raw.contains('=') ||
                             raw.startsWith(' ') || raw.endsWith(' ');
    return needsQuotes ? '"' + raw + '"' : raw;
}

QString keyFrom(const QByteArray& raw) {
    QString key;
    for (qsizetype at = 0; at < raw.size();) {
        const char character = raw[at++];
        if (character == '\\') {
            key += QLatin1Char('/');
        } else if (character == '%') {
            const bool isLong = at < raw.size() && raw[at] == 'U';
            const qsizetype digits = at + (isLong ? 1 : 0);
            qsizetype end = digits;
            const char16_t unit = unitAt(raw, end, 16, isLong ? 4 : 2);
            key += end > digits ? QChar(unit) : QChar('%');
            at = end > digits ? end : at;
        } else {
            key += QLatin1Char(character);
        }
    }
    return key;
}

bool isPlainInKeys(char16_t unit) {
    return (unit >= '0' && unit <= '9') || (unit >= 'A' && unit <= 'Z') || (unit >= 'a' && unit <= 'z') ||
           unit == '_' || unit == '-' || unit == '.';
}

QByteArray rawKey(const QString& key) {
    QByteArray raw;
    for (const QChar character : key) {
        const char16_t unit = character.unicode();
        if (isPlainInKeys(unit))
            raw += static_cast<char>(unit);
        else if (unit == '/')
            raw += '\\';
        else if (unit <= 0xFF)
            raw += '%' + QByteArray::number(unit, 16).rightJustified(2, '0').toUpper();
        else
            raw += "%U" + QByteArray::number(unit, 16).rightJustified(4, '0').toUpper();
    }
    return raw;
}

/// With the slash behind it; empty for keys without a section.
QString sectionFrom(const QByteArray& raw) {
    if (isNamedGeneral(raw))
        return {};
    const bool isEscaped = raw.compare(kSectionNamedSo, Qt::CaseInsensitive) == 0;
    return (isEscaped ? QString(kNoSection) : keyFrom(raw)) + QLatin1Char('/');
}

QByteArray rawSection(const QString& section) {
    if (section.isEmpty())
        return kNoSection;
    const QByteArray raw = rawKey(section);
    if (raw == kNoSection)
        return kSectionNamedSo;
    // Upper case is read as lower case there, so the first letter is no letter.
    return isNamedGeneral(raw) ? "%" + QByteArray::number(raw[0], 16) + raw.sliced(1) : raw;
}

} // namespace

ParsedSettings parseSettings(const QByteArray& content) {
    ParsedSettings parsed;
    QString section;
    bool isDamaged = false;
    for (qsizetype at = 0; at < content.size();) {
        const auto* const end = std::find(content.begin() + at, content.end(), '\n');
        const qsizetype length = end - content.begin() - at;
        const QByteArray line = content.sliced(at, length).trimmed();
        at += length + 1;
        const qsizetype equals = line.indexOf('=');
        if (line.isEmpty() || line.startsWith(';'))
            continue;
        if (line.startsWith('[') && line.endsWith(']'))
            section = sectionFrom(line.sliced(1).chopped(1).trimmed());
        else if (equals >= 0)
            parsed.values[(section + keyFrom(line.first(equals).trimmed())).toStdString()] =
                valueFrom(line.sliced(equals + 1));
        else
            isDamaged = true;
    }
    const auto mark = parsed.values.extract(kEndMark);
    const bool isComplete = !mark.empty() && mark.mapped() == "true";
    parsed.soundness = isDamaged ? Soundness::Damaged : isComplete ? Soundness::Sound : Soundness::CutOff;
    return parsed;
}

QByteArray formatSettings(const SettingsText& values) {
    std::map<QString, QByteArray> sections;
    for (const auto& [name, value] : values) {
        const QString key = QString::fromStdString(name);
        const qsizetype slash = std::max(key.indexOf(QLatin1Char('/')), qsizetype{0});
        const QString rest = slash > 0 ? key.sliced(slash + 1) : key;
        sections[key.first(slash)] += rawKey(rest) + '=' + rawValue(value) + '\n';
    }
    QByteArray content;
    for (const auto& [section, lines] : sections)
        content += '[' + rawSection(section) + "]\n" + lines + '\n';
    return content + "[zz]\ncomplete=true\n";
}

} // namespace glimra::desktop
