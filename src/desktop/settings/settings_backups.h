#pragma once

#include "platform/system_services.h"

#include <QByteArray>
#include <QString>

#include <string>

namespace glimra::desktop {

// Copies of a settings file FILE from earlier times, FILE.1 (the newest) to FILE.3, so that what a broken
// disk, a full one or another program does to it costs an evening's changes at most. Whatever moment the
// program is killed at, no copy is lost but the oldest. Main thread.

inline constexpr int kCopies = 3;
/// The name of a copy, 1 to `kCopies`.
QString copyName(const QString& path, int number);

/// In files that were written to their end, behind everything else: a key and its value.
inline constexpr const char* kEndMark = "zz/complete";

/// Whether a file can have been written by this program, or by hand, and is all there.
enum class Soundness { Sound, CutOff, Damaged };
Soundness soundnessOf(const QByteArray& content);
/// Whether there is a file, and it is sound.
bool isSound(const QString& path);

/// Before the settings are read: a damaged file, or one that was cut off, is set aside as FILE.damaged, or
/// FILE.damaged-2 and so on, and the newest sound copy takes its place. Where there is none, what can be
/// read of the file is left in use. Says in the system log what was done, and returns it; empty when nothing
/// was.
std::string mendSettings(const QString& path, platform::SystemLog& systemLog);

/// Keeps the file as the newest copy, if it is sound and differs from that one.
void keepCopy(const QString& path);

} // namespace glimra::desktop
