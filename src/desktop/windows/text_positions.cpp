#include "desktop/windows/text_positions.h"

namespace glimra::desktop {

namespace {

constexpr bool continuesCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

constexpr std::size_t unitsOf(char byte) {
    if (continuesCharacter(byte))
        return 0;
    return static_cast<unsigned char>(byte) >= 0xF0 ? 2 : 1;
}

constexpr std::size_t distance(std::size_t a, std::size_t b) {
    return a < b ? b - a : a - b;
}

QChar shown(QChar character) {
    const char16_t unit = character.unicode();
    if (unit == u'\n' || unit == u'\t')
        return character;
    if (unit < 0x20)
        return QChar(0x2400 + unit);
    if (unit == 0x7F)
        return QChar(0x2421);
    // Paragraph and line separators, and what QTextDocument keeps for itself.
    const bool special = unit == 0x2028 || unit == 0x2029 || (unit >= 0xFDD0 && unit <= 0xFDEF);
    return special ? QChar(QChar::ReplacementCharacter) : character;
}

/// A stand-in for every character that is not ASCII.
QString asciiOf(std::string_view bytes) {
    QString text;
    for (const char byte : bytes) {
        if (static_cast<unsigned char>(byte) < 0x80)
            text += QLatin1Char(byte);
        else
            text += QString(static_cast<qsizetype>(unitsOf(byte)), QChar::ReplacementCharacter);
    }
    return text;
}

} // namespace

std::size_t unitsIn(std::string_view utf8) {
    std::size_t units = 0;
    for (const char byte : utf8)
        units += unitsOf(byte);
    return units;
}

TextPlace placeOfUnits(std::string_view utf8, std::size_t units, std::initializer_list<TextPlace> known) {
    TextPlace place;
    for (const TextPlace& candidate : known)
        if (distance(candidate.units, units) < distance(place.units, units))
            place = candidate;
    while (place.units > units)
        place.units -= unitsOf(utf8[--place.bytes]);
    while (place.bytes < utf8.size() && place.units + unitsOf(utf8[place.bytes]) <= units)
        place.units += unitsOf(utf8[place.bytes++]);
    return place;
}

QString viewText(std::string_view utf8) {
    QString text = QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    if (static_cast<std::size_t>(text.size()) != unitsIn(utf8))
        text = asciiOf(utf8);
    for (QChar& character : text)
        character = shown(character);
    return text;
}

} // namespace glimra::desktop
