#pragma once

#include "tools/replay/film.h"

#include <memory>
#include <string>

namespace glimra::tools {

/// Where a film's frames go. Every function throws std::runtime_error when something can't be written.
class FilmOutput {
public:
    virtual ~FilmOutput() = default;
    virtual void show(const keyboards::KeyColors& colors, platform::Time begin, platform::Time end) = 0;
    /// After the last frame.
    virtual void finish() = 0;
};

/// An animated picture where `path` ends with ".gif"; else a folder, made if there is none, with a PNG file
/// for each frame, named by the second at which it begins.
std::unique_ptr<FilmOutput> openFilm(const std::string& path);

} // namespace glimra::tools
