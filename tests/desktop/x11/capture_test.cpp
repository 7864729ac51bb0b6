#include "desktop/x11/screen_capture.h"
#include "support/x_server.h"

#include <gmock/gmock.h>

#include <limits>

namespace glimra::desktop {
namespace {

using glimra::tests::eventually;
using glimra::tests::run;
using glimra::tests::XClient;
using glimra::tests::XvfbServer;
using platform::ScreenRect;
using ::testing::DoubleEq;
using ::testing::ElementsAre;
using ::testing::Optional;

MATCHER_P2(Spans, firstColumn, size, "") {
    return arg && arg->firstColumn == firstColumn && arg->pixels.size() == static_cast<std::size_t>(size);
}

std::chrono::milliseconds elapsed(const std::function<void()>& action) {
    const auto begin = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - begin);
}

struct DepthCase {
    const char* screen;
    std::uint32_t pixel;
    double red, green, blue;
};

class CaptureOfDepth : public ::testing::TestWithParam<DepthCase> {};

TEST_P(CaptureOfDepth, GivesTheExactColorOfEachPixel) {
    const DepthCase& depth = GetParam();
    XvfbServer server(depth.screen);
    XClient painter(server.display());
    painter.fill(0, 0, 800, 600, 0);
    painter.fill(7, 3, 1, 1, depth.pixel);
    X11ScreenCapture capture(server.display());

    const auto image = capture.capture({5, 3, 4, 1});
    ASSERT_THAT(image, Spans(0, 4));
    const auto color = image->view().colorAt(2);
    ASSERT_TRUE(color);
    EXPECT_THAT(color->red, DoubleEq(depth.red));
    EXPECT_THAT(color->green, DoubleEq(depth.green));
    EXPECT_THAT(color->blue, DoubleEq(depth.blue));
    for (const int x : {0, 1, 3})
        EXPECT_EQ(image->view().colorAt(x), platform::Color{}) << x;
}

INSTANTIATE_TEST_SUITE_P(
    X11, CaptureOfDepth,
    ::testing::Values(DepthCase{"800x600x24", 0xFF0E0D, 1.0, 14 / 255.0, 13 / 255.0},
                      DepthCase{"800x600x30", (1023u << 20) | (56u << 10) | 1u, 1.0, 56 / 1023.0, 1 / 1023.0},
                      DepthCase{"800x600x16", (31u << 11) | (4u << 5) | 1u, 1.0, 4 / 63.0, 1 / 31.0}));

TEST(PixelLayoutTest, UnpacksBothByteOrdersAndPackedPixels) {
    const std::vector<std::uint8_t> bytes{1, 2, 3, 4, 5, 6, 7, 8};
    const auto unpack = [&](std::size_t count, std::size_t bytesPerPixel, ByteOrder order) {
        return unpackPixels(bytes, count, {{}, bytesPerPixel, order});
    };
    EXPECT_THAT(unpack(2, 4, ByteOrder::LeastSignificantFirst),
                Optional(ElementsAre(0x04030201, 0x08070605)));
    EXPECT_THAT(unpack(2, 4, ByteOrder::MostSignificantFirst), Optional(ElementsAre(0x01020304, 0x05060708)));
    EXPECT_THAT(unpack(2, 3, ByteOrder::LeastSignificantFirst), Optional(ElementsAre(0x030201, 0x060504)));
    EXPECT_THAT(unpack(2, 3, ByteOrder::MostSignificantFirst), Optional(ElementsAre(0x010203, 0x040506)));
    EXPECT_EQ(unpack(3, 3, ByteOrder::MostSignificantFirst), std::nullopt);
}

TEST(X11ScreenCaptureTest, LeavesOutWhatLiesBeyondTheScreen) {
    XvfbServer server;
    X11ScreenCapture capture(server.display());
    EXPECT_THAT(capture.capture({0, 0, 800, 1}), Spans(0, 800));
    EXPECT_THAT(capture.capture({-10, 0, 20, 1}), Spans(10, 10));
    EXPECT_THAT(capture.capture({790, 599, 20, 1}), Spans(0, 10));
    EXPECT_THAT(capture.capture({-5, -1, 10000, 2}), Spans(5, 800));
    // Pixels belong to the rectangle by their centres.
    EXPECT_THAT(capture.capture({0.4, 0, 2.2, 1}), Spans(0, 3));
    EXPECT_THAT(capture.capture({0.6, 0, 1.8, 1}), Spans(0, 1));

    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const ScreenRect& rect :
         {ScreenRect{800, 0, 10, 1}, ScreenRect{-10, 0, 10, 1}, ScreenRect{0, 600, 10, 1},
          ScreenRect{0, -1, 10, 1}, ScreenRect{5, 0, 0, 1}, ScreenRect{5, 0, -3, 1},
          ScreenRect{nan, 0, 10, 1}, ScreenRect{0, 0, nan, 1}, ScreenRect{-infinity, 0, infinity, 1},
          ScreenRect{-1e300, 0, 2e300, 1}})
        EXPECT_EQ(capture.capture(rect), std::nullopt) << rect.x << ' ' << rect.y << ' ' << rect.width;
    EXPECT_THAT(capture.capture({0, 0, infinity, 1}), Spans(0, 800));
}

TEST(X11ScreenCaptureTest, FollowsMonitorsAndModes) {
    XvfbServer server;
    const std::string display = server.display();
    XClient painter(display);
    painter.fill(0, 0, 800, 600, 0x0000FF);
    painter.fill(450, 20, 1, 1, 0xFF0000);
    X11ScreenCapture capture(display);
    const auto becomesWide = [&](std::size_t width, const ScreenRect& rect) {
        return eventually([&] {
            const auto image = capture.capture(rect);
            return image && image->pixels.size() == width;
        });
    };
    EXPECT_EQ(capture.activeDisplayCount(), 1);

    ASSERT_EQ(run({"xrandr", "--setmonitor", "*right", "300/80x500/130+450+20", "none"}, display), 0);
    ASSERT_TRUE(becomesWide(300, {0, 0, 400, 1}));
    EXPECT_EQ(capture.capture({0, 0, 1, 1})->view().colorAt(0), (platform::Color{1.0, 0.0, 0.0}));
    EXPECT_THAT(capture.capture({-2, 0, 4, 1}), Spans(2, 2));
    EXPECT_EQ(capture.activeDisplayCount(), 1);
    ASSERT_EQ(run({"xrandr", "--delmonitor", "right"}, display), 0);
    ASSERT_TRUE(becomesWide(800, {0, 0, 900, 1}));

    ASSERT_EQ(
        run({"xrandr", "--newmode", "small", "25", "640", "656", "752", "800", "480", "490", "492", "525"},
            display),
        0);
    ASSERT_EQ(run({"xrandr", "--addmode", "screen", "small"}, display), 0);
    ASSERT_EQ(run({"xrandr", "--output", "screen", "--mode", "small"}, display), 0);
    ASSERT_TRUE(becomesWide(40, {600, 0, 100, 1}));
    EXPECT_EQ(capture.capture({0, 480, 10, 1}), std::nullopt);
}

TEST(X11ScreenCaptureTest, SendsOneRequestForEachCycleAndNothingElse) {
    XvfbServer server;
    X11ScreenCapture capture(server.display());
    ASSERT_EQ(capture.activeDisplayCount(), 1);
    ASSERT_TRUE(capture.capture({0, 0, 80, 1}));
    const std::uint64_t before = capture.bytesSent();
    for (int cycle = 0; cycle < 10; ++cycle) {
        ASSERT_EQ(capture.activeDisplayCount(), 1);
        ASSERT_TRUE(capture.capture({0, 0, 80, 1}));
    }
    EXPECT_EQ(capture.bytesSent() - before, 10 * sizeof(xcb_get_image_request_t));
}

TEST(X11ScreenCaptureTest, TakesALostServerForAnOutageAndFindsItAgain) {
    const int number = glimra::tests::reservedDisplayNumber();
    auto server = std::make_unique<XvfbServer>("800x600x24", number);
    X11ScreenCapture capture(server->display());
    ASSERT_TRUE(capture.capture({0, 0, 80, 1}));

    server->kill();
    EXPECT_EQ(capture.capture({0, 0, 80, 1}), std::nullopt);
    EXPECT_EQ(capture.activeDisplayCount(), 0);
    EXPECT_LT(elapsed([&] {
                  for (int cycle = 0; cycle < 100; ++cycle)
                      capture.activeDisplayCount();
              }).count(),
              1000);

    server = std::make_unique<XvfbServer>("640x480x24", number);
    ASSERT_TRUE(eventually([&] { return capture.activeDisplayCount() == 1; }));
    EXPECT_THAT(capture.capture({600, 0, 80, 1}), Spans(0, 40));
}

TEST(X11ScreenCaptureTest, GoesOnWithoutAServerThatStandsStill) {
    XvfbServer server;
    X11ScreenCapture capture(server.display());
    ASSERT_TRUE(capture.capture({0, 0, 80, 1}));

    server.process().signal(SIGSTOP);
    const auto wait = elapsed([&] { EXPECT_EQ(capture.capture({0, 0, 80, 1}), std::nullopt); });
    EXPECT_GE(wait, kReplyPatience);
    EXPECT_LT(wait, 8 * kReplyPatience);
    EXPECT_LT(elapsed([&] {
                  for (int cycle = 0; cycle < 100; ++cycle) {
                      EXPECT_EQ(capture.activeDisplayCount(), 1);
                      EXPECT_EQ(capture.capture({0, 0, 80, 1}), std::nullopt);
                  }
              }),
              kReplyPatience);
    std::optional<X11ScreenCapture> late;
    EXPECT_LT(elapsed([&] { late.emplace(server.display()); }).count(), 3000);
    EXPECT_EQ(late->activeDisplayCount(), 0);

    server.process().signal(SIGCONT);
    EXPECT_TRUE(eventually([&] { return capture.capture({0, 0, 80, 1}).has_value(); }));
    EXPECT_TRUE(eventually([&] { return late->capture({0, 0, 80, 1}).has_value(); }));
}

} // namespace
} // namespace glimra::desktop
