#include "tools/replay/film_output.h"

#include "tools/picture/keyboard_picture.h"
#include "tools/picture/picture_files.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

namespace glimra::tools {

namespace {

constexpr int kPixelsPerPointOfPng = 2;

class PngFolder final : public FilmOutput {
public:
    explicit PngFolder(std::string path) : m_path(std::move(path)) {
        std::error_code error;
        std::filesystem::create_directories(m_path, error);
        if (error)
            throw std::runtime_error(m_path + ": " + error.message());
    }

    void show(const keyboards::KeyColors& colors, platform::Time begin, platform::Time) override {
        const auto seconds = std::chrono::floor<std::chrono::seconds>(begin);
        // The zeros in front keep the names in the order of time when they are sorted as text.
        std::array<char, 48> name{};
        std::snprintf(name.data(), name.size(), "/%07lld.%09lld.png", static_cast<long long>(seconds.count()),
                      static_cast<long long>((begin - seconds).count()));
        writePng(m_path + name.data(), drawKeyboard(colors, kPixelsPerPointOfPng));
    }
    void finish() override {}

private:
    std::string m_path;
};

class GifFile final : public FilmOutput {
public:
    explicit GifFile(const std::string& path)
        : m_writer(path, lighting::kKeyboardWidth, lighting::kKeyboardHeight) {}

    void show(const keyboards::KeyColors& colors, platform::Time begin, platform::Time end) override {
        m_writer.add(drawKeyboard(colors, 1), end - begin);
    }
    void finish() override { m_writer.close(); }

private:
    GifWriter m_writer;
};

} // namespace

std::unique_ptr<FilmOutput> openFilm(const std::string& path) {
    if (path.ends_with(".gif"))
        return std::make_unique<GifFile>(path);
    return std::make_unique<PngFolder>(path);
}

} // namespace glimra::tools
