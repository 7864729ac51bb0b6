#pragma once

#include "platform/system_services.h"

#include <QByteArray>
#include <QString>

#include <string>

namespace glimra::desktop {

// Earlier copies of a settings file FILE: FILE.1 (the newest) to FILE.3. If the disk or another program
// damages the file, at most one evening's changes are lost. Killing the program at any moment loses at most
// the oldest copy. Main thread.

inline constexpr int kCopies = 3;
/// The name of copy `number`, 1 to `kCopies`.
QString copyName(const QString& path, int number);

/// A key that is written after all others, so a file that contains it is complete.
inline constexpr const char* kEndMark = "zz/complete";

/// Whether content looks like a settings file, written by this program or by hand, and is complete.
enum class Soundness { Sound, CutOff, Damaged };
Soundness soundnessOf(const QByteArray& content);
/// Whether the file exists and is sound.
bool isSound(const QString& path);

/// Must be called before the settings are read. If the file is damaged or cut off, saves it as FILE.damaged
/// (or FILE.damaged-2 and so on) and puts the newest sound copy in its place; without a sound copy, the file
/// stays in use as far as it can be read. Writes to the system log what was done and returns it; empty when
/// nothing was done.
std::string mendSettings(const QString& path, platform::SystemLog& systemLog);

/// Saves the file as the newest copy if it is sound and differs from that copy.
void keepCopy(const QString& path);

} // namespace glimra::desktop
