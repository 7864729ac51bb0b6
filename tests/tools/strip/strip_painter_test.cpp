#include "desktop/x11/screen_capture.h"
#include "support/x_server.h"
#include "tools/strip/strip_painter.h"

#include <gmock/gmock.h>

namespace glimra::tools {
namespace {

using glimra::tests::eventually;
using glimra::tests::XClient;
using glimra::tests::XvfbServer;
using ::testing::HasSubstr;
using ::testing::ThrowsMessage;

constexpr StripFrame kColors = {{{255, 0, 0},
                                 {0, 255, 0},
                                 {0, 0, 255},
                                 {255, 255, 0},
                                 {255, 0, 255},
                                 {0, 255, 255},
                                 {255, 255, 255},
                                 {0, 0, 0},
                                 {14, 13, 1},
                                 {128, 127, 126},
                                 {1, 2, 3}}};

/// The colours of a row of the screen; fails the test when it cannot be captured whole.
std::vector<Rgb> row(desktop::X11ScreenCapture& capture, int x, int y, int width) {
    const auto image = capture.capture({double(x), double(y), double(width), 1});
    std::vector<Rgb> colors;
    for (int i = 0; image && i < width; ++i)
        if (const auto color = image->view().colorAt(i))
            colors.push_back(lighting::toRgb(*color));
    EXPECT_EQ(colors.size(), static_cast<std::size_t>(width));
    return colors;
}

std::vector<Rgb> stripRow(const StripFrame& frame, int width) {
    std::vector<Rgb> colors;
    for (int pixel = 0; pixel < width; ++pixel)
        colors.push_back(frame[static_cast<std::size_t>((pixel + 0.5) * 11 / width)]);
    return colors;
}

TEST(StripPainter, EachPixelHasTheColorOfItsCell) {
    XvfbServer server;
    desktop::X11ScreenCapture capture(server.display());
    XClient background(server.display());
    const std::vector<Rgb> around(3, Rgb{0x12, 0x34, 0x56});
    for (const StripPlace& place :
         {StripPlace{}, StripPlace{5, 11}, StripPlace{3, 57}, StripPlace{700, 97}}) {
        background.fill(0, 0, 800, 10, 0x123456);
        StripPainter painter(server.display(), place);
        EXPECT_EQ(row(capture, place.left, 0, place.width), stripRow(kDarkFrame, place.width));
        painter.paint(kColors);
        EXPECT_EQ(row(capture, place.left, 0, place.width), stripRow(kColors, place.width)) << place.width;
        EXPECT_EQ(row(capture, place.left + place.width, 0, 3), around);
    }
}

TEST(StripPainter, OtherWindowsDoNotWipeItOut) {
    XvfbServer server;
    desktop::X11ScreenCapture capture(server.display());
    StripPainter painter(server.display(), {});
    painter.paint(kColors);
    {
        StripPainter cover(server.display(), {});
        EXPECT_EQ(row(capture, 2, 0, 80), stripRow(kDarkFrame, 80));
        painter.paint(kColors);
        EXPECT_EQ(row(capture, 2, 0, 80), stripRow(kColors, 80)) << "a frame is painted above all windows";
        cover.paint(testPattern());
        EXPECT_EQ(row(capture, 2, 0, 80), stripRow(testPattern(), 80));
    }
    EXPECT_TRUE(eventually([&] { return row(capture, 2, 0, 80) == stripRow(kColors, 80); }))
        << "a window that has gone leaves the frame as it was";
}

TEST(StripPainter, FollowsTheMainDisplay) {
    XvfbServer server;
    ASSERT_EQ(glimra::tests::run({"xrandr", "--setmonitor", "*right", "400/100x600/150+400+0", "screen"},
                                   server.display()),
              0);
    desktop::X11ScreenCapture whole(server.display());
    StripPainter painter(server.display(), {10, 80});
    painter.paint(kColors);
    EXPECT_EQ(row(whole, 10, 0, 80), stripRow(kColors, 80));
    EXPECT_THAT(([&] {
                    StripPainter(server.display(), {330, 80});
                }),
                ThrowsMessage<DisplayError>(HasSubstr("400 pixels wide")));
}

TEST(StripPainter, SaysWhenTheServerIsNotThereOrGoes) {
    EXPECT_THAT(([] { StripPainter(":4242", {}); }), ThrowsMessage<DisplayError>(HasSubstr(":4242")));
    XvfbServer server;
    StripPainter painter(server.display(), {});
    server.kill();
    EXPECT_THAT(([&] { painter.paint(kColors); }), ThrowsMessage<DisplayError>(HasSubstr("gone")));
}

} // namespace
} // namespace glimra::tools
