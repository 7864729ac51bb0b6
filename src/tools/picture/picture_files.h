#pragma once

#include "tools/picture/picture.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

namespace glimra::tools {

/// Writes a PNG file. Throws std::runtime_error, with the path and the reason, when that fails.
void writePng(const std::string& path, const Picture& picture);

/// One of the file's colors stands for a pixel that stays as it is.
inline constexpr std::size_t kMostFilmColors = 255;

/// Writes an animated GIF, picture by picture; it plays again and again. All pictures have one size. Every
/// function throws std::runtime_error, with the path and the reason, when the file can't be written.
class GifWriter {
public:
    GifWriter(std::string path, int width, int height);
    ~GifWriter();

    GifWriter(const GifWriter&) = delete;
    GifWriter& operator=(const GifWriter&) = delete;

    /// Adds a picture, of at most `kMostFilmColors`, that shows for `duration`. The file counts in hundredths
    /// of a second; the pictures that follow make up for what was rounded off.
    void add(const Picture& picture, std::chrono::nanoseconds duration);
    /// Completes the file; nothing can be added then.
    void close();

private:
    struct File;

    std::string m_path;
    std::unique_ptr<File> m_file;
};

} // namespace glimra::tools
