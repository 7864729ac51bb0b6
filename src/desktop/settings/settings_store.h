#pragma once

#include "desktop/settings/settings_text.h"

#include <QString>

namespace glimra::desktop {

// A settings file on the disk. Nothing here waits for a device or a pipe that somebody put in its place.

/// Real settings take about ten kilobytes; a file beyond that is not read.
inline constexpr qint64 kMostSettingsBytes = qint64{16} << 20;

enum class FileState {
    Missing,
    /// There is something that cannot be opened, or is no regular file.
    Unreadable,
    TooBig,
    Read
};

struct StoredSettings {
    FileState state = FileState::Missing;
    /// Empty unless the file was read.
    ParsedSettings parsed{};

    bool isSound() const { return state == FileState::Read && parsed.soundness == Soundness::Sound; }
};
StoredSettings readSettings(const QString& path);

/// Replaces the file as a whole, through a link if it is one, by one that only the owner may read and write;
/// creates its folder. When that fails, returns false and leaves the file as it was.
bool writeSettings(const QString& path, const SettingsText& values);

/// Keeps other programs from replacing the files of one folder between reading and writing one of them. The
/// system frees it with the program, however that ends. Where it cannot be had for two seconds, things go on
/// without it: the file is replaced as a whole anyway.
class FolderLock {
public:
    /// Of the folder that holds the file.
    explicit FolderLock(const QString& path);
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    ~FolderLock();

private:
    int m_folder;
};

} // namespace glimra::desktop
