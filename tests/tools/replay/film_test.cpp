#include "support/folder.h"
#include "tools/replay/film_output.h"

#include <gif_lib.h>
#include <gmock/gmock.h>
#include <png.h>

#include <sstream>

namespace glimra::tools {
namespace {

using keyboards::KeyboardModel;
using keyboards::KeyColors;
using lighting::Rgb;
using std::chrono::milliseconds;

TEST(FilmTest, EffectsMoveBetweenTheCallsAndTheLastChangeIsSeen) {
    std::vector<std::string> frames;
    Film film([&](const KeyColors& colors, platform::Time begin, platform::Time end) {
        std::ostringstream text;
        text << begin / milliseconds(1) << " to " << end / milliseconds(1) << " red " << int{colors[0].red};
        frames.push_back(text.str());
    });
    KeyboardModel keyboard;
    constexpr int kFirstInTheLayout = 0xFFF6;
    keyboard.perform(platform::FlashSingleKey{kFirstInTheLayout, {100, 0, 0}, 0, 250}, milliseconds(100));
    film.change(keyboard, milliseconds(100));
    keyboard = {};
    keyboard.perform(platform::SetLighting{{20, 0, 0}}, milliseconds(700));
    film.change(keyboard, milliseconds(700));
    film.end(milliseconds(700));
    EXPECT_THAT(frames, testing::ElementsAre("100 to 350 red 255", "350 to 600 red 0", "600 to 700 red 255",
                                             "700 to 733 red 51"));
}

KeyColors allKeys(Rgb color) {
    KeyColors colors{};
    colors.fill(color);
    return colors;
}

/// Colour of a pixel of a PNG file, and its size.
Rgb pngPixel(const std::string& path, png_uint_32 x, png_uint_32 y, png_uint_32& width) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0)
        throw std::runtime_error(path);
    image.format = PNG_FORMAT_RGB;
    std::vector<png_byte> pixels(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr);
    width = image.width;
    const auto* pixel = pixels.data() + (y * image.width + x) * 3;
    return {pixel[0], pixel[1], pixel[2]};
}

TEST(FilmOutputTest, FolderOfPicturesNamedByTheirTime) {
    const std::string folder = tests::newFolder().string();
    const auto output = openFilm(folder);
    KeyColors colors = allKeys({0, 0, 0});
    const lighting::KeyRect& key = lighting::kKeyboardLayout[4];
    colors[4] = {10, 200, 30};
    output->show(colors, std::chrono::nanoseconds(12'345'678'901), std::chrono::seconds(13));
    output->finish();
    png_uint_32 width = 0;
    const auto atX = static_cast<png_uint_32>(2 * key.x + 6);
    const auto atY = static_cast<png_uint_32>(2 * (lighting::kKeyboardHeight - key.y) - 6);
    const std::string file = folder + "/0000012.345678901.png";
    EXPECT_EQ(pngPixel(file, atX, atY, width), (Rgb{10, 200, 30}));
    EXPECT_EQ(width, 2U * lighting::kKeyboardWidth);
    EXPECT_THROW(openFilm("/proc/film"), std::runtime_error);
}

TEST(FilmOutputTest, AnimatedPictureKeepsPace) {
    const std::string file = (tests::newFolder() / "film.gif").string();
    const auto output = openFilm(file);
    for (int i = 0; i < 9; ++i)
        output->show(allKeys({static_cast<std::uint8_t>(25 * i), 0, 0}), milliseconds(33 * i),
                     milliseconds(33 * (i + 1)));
    output->finish();

    GifFileType* const gif = DGifOpenFileName(file.c_str(), nullptr);
    ASSERT_NE(gif, nullptr);
    ASSERT_EQ(DGifSlurp(gif), GIF_OK);
    EXPECT_EQ(gif->ImageCount, 9);
    int hundredths = 0;
    for (int i = 0; i < gif->ImageCount; ++i) {
        GraphicsControlBlock control{};
        DGifSavedExtensionToGCB(gif, i, &control);
        hundredths += control.DelayTime;
    }
    EXPECT_EQ(hundredths, 30);
    DGifCloseFile(gif, nullptr);
    EXPECT_THROW(openFilm("/proc/film.gif"), std::runtime_error);
}

} // namespace
} // namespace glimra::tools
