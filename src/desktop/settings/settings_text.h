#pragma once

#include <QByteArray>

#include <map>
#include <string>

namespace glimra::desktop {

// The INI text of a settings file, as QSettings wrote it for text values, and nothing else of what QSettings
// stores: a value is always text. A key "section/rest" stands in [section], every other one in [General].
// https://doc.qt.io/qt-6/qsettings.html#Format-enum

/// The text of each key's value, as UTF-8.
using SettingsText = std::map<std::string, std::string, std::less<>>;

/// A key that is written after all others, so text that contains it is complete.
inline constexpr const char* kEndMark = "zz/complete";

enum class Soundness {
    Sound,
    /// The end mark is missing: the text was cut off, or written by hand.
    CutOff,
    /// Some lines are no lines of settings.
    Damaged
};

struct ParsedSettings {
    Soundness soundness = Soundness::Sound;
    /// Without the end mark; of damaged text, what can be read.
    SettingsText values;
};
ParsedSettings parseSettings(const QByteArray& content);

/// Reads back as the same values, and sound.
QByteArray formatSettings(const SettingsText& values);

} // namespace glimra::desktop
