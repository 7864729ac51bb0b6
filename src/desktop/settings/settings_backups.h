#pragma once

#include "desktop/settings/settings_store.h"
#include "platform/system_services.h"

#include <QString>

#include <optional>
#include <string>

namespace glimra::desktop {

// Earlier copies of a settings file FILE: FILE.1 (the newest) to FILE.3. If the disk or another program
// damages the file, at most one evening's changes are lost. Killing the program at any moment loses at most
// the oldest copy. Main thread.

inline constexpr int kCopies = 3;

/// A settings file and what is to be used of it.
struct FoundSettings {
    FileState state = FileState::Missing;
    Soundness soundness = Soundness::Sound;
    /// The newest sound copy. Looked for only if the file is not sound itself.
    std::optional<int> copy{};
    /// The file's values as far as they can be read, or those of the copy if the file needs mending.
    SettingsText values{};

    /// Whether the file cannot be used as it is.
    bool needsMending() const;
    /// Whether the values are all that was once stored.
    bool isWhole() const;
};
/// Changes nothing.
FoundSettings findSettings(const QString& path);

/// If the file needs mending, saves it as FILE.damaged (or FILE.damaged-2 and so on) and writes the found
/// values in its place. Writes to the system log what was done and returns it; empty when nothing was done.
std::string mendSettings(const QString& path, const FoundSettings& found, platform::SystemLog& systemLog);

/// Saves values that are known to be good as the newest copy if they differ from that copy.
void keepCopy(const QString& path, const SettingsText& values);

} // namespace glimra::desktop
