#include "tools/picture/picture_files.h"

#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <utility>

namespace glimra::tools {

namespace {

using lighting::Rgb;
using Hundredths = std::chrono::duration<std::int64_t, std::centi>;

/// Players show pictures with a shorter time much longer.
constexpr Hundredths kShortest{2};

struct FreeColorMap {
    void operator()(ColorMapObject* map) const { GifFreeMapObject(map); }
};
using ColorMap = std::unique_ptr<ColorMapObject, FreeColorMap>;

struct Area {
    int left;
    int top;
    int right;
    int bottom;
};

/// The GIF library calls this to write.
int writeBytes(GifFileType* gif, const GifByteType* bytes, int size) {
    auto& stream = *static_cast<std::ofstream*>(gif->UserData);
    stream.write(reinterpret_cast<const char*>(bytes), size);
    return stream ? size : 0;
}

std::size_t pixelAt(const Picture& picture, int x, int y) {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) +
           static_cast<std::size_t>(x);
}

} // namespace

struct GifWriter::File {
    File() = default;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (gif)
            EGifCloseFile(gif, nullptr);
    }

    std::ofstream stream;
    GifFileType* gif = nullptr;
    /// What a player of the file shows after the pictures so far.
    std::vector<Rgb> shown;
    std::chrono::nanoseconds wantedEnd{0};
    Hundredths writtenEnd{0};

    bool putLoop();
    bool putTiming(Hundredths delay, int transparent);
    /// The part of a picture that differs from what is shown; none when nothing does.
    std::optional<Area> changedPart(const Picture& picture) const;
    bool putPart(const Picture& picture, const Area& box, int transparent);
};

bool GifWriter::File::putLoop() {
    constexpr std::array<GifByteType, 3> kForever{1, 0, 0};
    return EGifPutExtensionLeader(gif, APPLICATION_EXT_FUNC_CODE) == GIF_OK &&
           EGifPutExtensionBlock(gif, 11, "NETSCAPE2.0") == GIF_OK &&
           EGifPutExtensionBlock(gif, static_cast<int>(kForever.size()), kForever.data()) == GIF_OK &&
           EGifPutExtensionTrailer(gif) == GIF_OK;
}

bool GifWriter::File::putTiming(Hundredths delay, int transparent) {
    const GraphicsControlBlock control{DISPOSE_DO_NOT, false, static_cast<int>(delay.count()), transparent};
    std::array<GifByteType, 4> bytes{};
    const auto size = EGifGCBToExtension(&control, bytes.data());
    return EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(size), bytes.data()) == GIF_OK;
}

std::optional<Area> GifWriter::File::changedPart(const Picture& picture) const {
    if (shown.empty())
        return Area{0, 0, picture.width, picture.height};
    Area box{picture.width, picture.height, 0, 0};
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const std::size_t at = pixelAt(picture, x, y);
            if (picture.palette[picture.pixels[at]] == shown[at])
                continue;
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                   std::max(box.bottom, y + 1)};
        }
    if (box.left >= box.right)
        return std::nullopt;
    return box;
}

bool GifWriter::File::putPart(const Picture& picture, const Area& box, int transparent) {
    // The number of colours in a map is a power of two.
    const auto size = static_cast<int>(std::bit_ceil(picture.palette.size() + 1));
    const ColorMap map(GifMakeMapObject(size, nullptr));
    if (!map)
        return false;
    std::ranges::transform(picture.palette, map->Colors, [](Rgb color) {
        return GifColorType{color.red, color.green, color.blue};
    });
    const int width = box.right - box.left;
    if (EGifPutImageDesc(gif, box.left, box.top, width, box.bottom - box.top, false, map.get()) != GIF_OK)
        return false;
    std::vector<GifPixelType> line(static_cast<std::size_t>(width));
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            const std::size_t at = pixelAt(picture, x, y);
            const Rgb color = picture.palette[picture.pixels[at]];
            const bool stays = !shown.empty() && shown[at] == color;
            line[static_cast<std::size_t>(x - box.left)] =
                stays ? static_cast<GifPixelType>(transparent) : picture.pixels[at];
        }
        if (EGifPutLine(gif, line.data(), width) != GIF_OK)
            return false;
    }
    shown.resize(picture.pixels.size());
    std::ranges::transform(picture.pixels, shown.begin(),
                           [&](std::uint8_t index) { return picture.palette[index]; });
    return true;
}

GifWriter::GifWriter(std::string path, int width, int height)
    : m_path(std::move(path)),
      m_file(std::make_unique<File>()) {
    int error = 0;
    m_file->stream.open(m_path, std::ios::binary);
    m_file->gif = EGifOpen(&m_file->stream, writeBytes, &error);
    if (!m_file->gif)
        throw std::runtime_error(m_path + ": " + GifErrorString(error));
    EGifSetGifVersion(m_file->gif, true);
    if (EGifPutScreenDesc(m_file->gif, width, height, 8, 0, nullptr) != GIF_OK || !m_file->putLoop())
        throw std::runtime_error(m_path + ": " + GifErrorString(m_file->gif->Error));
}

GifWriter::~GifWriter() = default;

void GifWriter::add(const Picture& picture, std::chrono::nanoseconds duration) {
    m_file->wantedEnd += duration;
    const Hundredths delay = std::chrono::round<Hundredths>(m_file->wantedEnd) - m_file->writtenEnd;
    if (delay < kShortest)
        return;
    const auto transparent = static_cast<int>(picture.palette.size());
    const Area box = m_file->changedPart(picture).value_or(Area{0, 0, 1, 1});
    if (!m_file->putTiming(delay, transparent) || !m_file->putPart(picture, box, transparent))
        throw std::runtime_error(m_path + ": " + GifErrorString(m_file->gif->Error));
    m_file->writtenEnd += delay;
}

void GifWriter::close() {
    int error = 0;
    if (EGifCloseFile(std::exchange(m_file->gif, nullptr), &error) != GIF_OK)
        throw std::runtime_error(m_path + ": " + GifErrorString(error));
    m_file->stream.close();
    if (!m_file->stream)
        throw std::runtime_error(m_path + ": the file can't be written");
}

} // namespace glimra::tools
