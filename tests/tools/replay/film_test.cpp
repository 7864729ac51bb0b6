#include "tools/replay/film_output.h"

#include <gif_lib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>

#include <filesystem>
#include <string>
#include <vector>

namespace glimra::tools {
namespace {

using keyboards::KeyboardModel;
using keyboards::KeyColors;
using lighting::Rgb;
using std::chrono::milliseconds;
using testing::ElementsAre;

struct Frame {
    int begin;
    int end;
    int red;

    friend bool operator==(const Frame&, const Frame&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Frame& frame) {
        return out << frame.begin << " to " << frame.end << " red " << frame.red;
    }
};

class FilmTest : public testing::Test {
protected:
    void light(int red, int at) {
        keyboard.perform(platform::SetLighting{{red, 0, 0}}, milliseconds(at));
        film.change(keyboard, milliseconds(at));
    }

    std::vector<Frame> frames;
    Film film{[this](const KeyColors& colors, platform::Time begin, platform::Time end) {
        frames.push_back({static_cast<int>(begin / milliseconds(1)), static_cast<int>(end / milliseconds(1)),
                          colors[0].red});
    }};
    KeyboardModel keyboard;
};

TEST_F(FilmTest, EffectsMoveBetweenTheCalls) {
    // The first key of the layout.
    keyboard.perform(platform::FlashSingleKey{0xFFF6, {100, 0, 0}, 0, 250}, milliseconds(100));
    film.change(keyboard, milliseconds(100));
    film.end(milliseconds(700));
    EXPECT_THAT(frames, ElementsAre(Frame{100, 350, 255}, Frame{350, 600, 0}, Frame{600, 700, 255}));
}

TEST_F(FilmTest, LastChangeIsSeen) {
    light(100, 100);
    light(20, 200);
    film.end(milliseconds(200));
    EXPECT_THAT(frames, ElementsAre(Frame{100, 200, 255}, Frame{200, 233, 51}));
}

class FilmOutputTest : public testing::Test {
protected:
    ~FilmOutputTest() override { std::filesystem::remove_all(folder); }

    static KeyColors allKeys(Rgb color) {
        KeyColors colors{};
        colors.fill(color);
        return colors;
    }

    std::filesystem::path folder = std::filesystem::path(testing::TempDir()) /
                                   ("film" + std::to_string(testing::UnitTest::GetInstance()->random_seed()) +
                                    testing::UnitTest::GetInstance()->current_test_info()->name());
};

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

TEST_F(FilmOutputTest, FolderOfPicturesNamedByTheirTime) {
    const auto output = openFilm(folder.string());
    KeyColors colors = allKeys({0, 0, 0});
    const lighting::KeyRect& key = lighting::kKeyboardLayout[4];
    colors[4] = {10, 200, 30};
    output->show(colors, std::chrono::nanoseconds(12'345'678'901), std::chrono::seconds(13));
    output->finish();
    png_uint_32 width = 0;
    const auto atX = static_cast<png_uint_32>(2 * key.x + 6);
    const auto atY = static_cast<png_uint_32>(2 * (lighting::kKeyboardHeight - key.y) - 6);
    const std::string file = (folder / "0000012.345678901.png").string();
    EXPECT_EQ(pngPixel(file, atX, atY, width), (Rgb{10, 200, 30}));
    EXPECT_EQ(width, 2U * lighting::kKeyboardWidth);
}

TEST_F(FilmOutputTest, AnimatedPictureKeepsPace) {
    std::filesystem::create_directories(folder);
    const std::string file = (folder / "film.gif").string();
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
}

TEST_F(FilmOutputTest, TellsWhatCannotBeWritten) {
    EXPECT_THROW(openFilm("/proc/film"), std::runtime_error);
    EXPECT_THROW(openFilm("/proc/film.gif"), std::runtime_error);
}

} // namespace
} // namespace glimra::tools
