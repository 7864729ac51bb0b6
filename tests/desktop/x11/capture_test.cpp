#include "desktop/x11/capture_check.h"
#include "desktop/x11/screen_capture.h"
#include "support/x_server.h"

#include <gmock/gmock.h>

#include <limits>

namespace glimra::desktop {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using platform::ScreenRect;
using testing::ElementsAre;
using tests::eventually;
using tests::millisecondsOf;
using tests::XClient;
using tests::XvfbServer;

const std::string kGameClass = "wow.exe\0wow.exe\0"s;
constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kGreen = 0x00FF00;
constexpr std::uint32_t kBlue = 0x0000FF;

MATCHER_P2(Spans, firstColumn, size, "") {
    return arg && arg->firstColumn == firstColumn && arg->pixels.size() == static_cast<std::size_t>(size);
}

/// A server whose client shows the windows, and a capture of it.
class CaptureTest : public testing::Test {
protected:
    explicit CaptureTest(CaptureChoice choice = CaptureChoice::Automatic)
        : capture(server.display(), choice, [this](CaptureState state) { told.push_back(state); }) {}

    void xrandr(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "xrandr");
        ASSERT_EQ(tests::run(arguments, server.display()), 0);
    }
    /// A window that is shown and filled; hence above all others.
    xcb_window_t shownWindow(const std::string& windowClass, std::uint32_t pixel, int x = 100, int y = 50,
                             int width = 100, int height = 100) {
        const xcb_window_t window = client.createWindow(windowClass);
        client.place(window, x, y, width, height);
        client.show(window);
        client.fill(window, 0, 0, width, height, pixel);
        return window;
    }
    std::optional<std::uint32_t> firstPixel() {
        const auto image = capture.capture({0, 0, 1, 1});
        const auto pixel = image ? image->view().pixelAt(0) : std::nullopt;
        return pixel ? std::optional(*pixel & 0xFFFFFF) : std::nullopt;
    }
    bool becomes(std::optional<std::uint32_t> pixel) {
        return eventually([&] { return firstPixel() == pixel; });
    }
    bool becomesWide(std::size_t width, const ScreenRect& rect = {0, 0, 2000, 1}) {
        return eventually([&] {
            const auto image = capture.capture(rect);
            return image && image->pixels.size() == width;
        });
    }

    XvfbServer server{"800x600x24", tests::reservedDisplayNumber()};
    XClient client{server.display()};
    std::vector<CaptureState> told;
    X11ScreenCapture capture;
};

struct WindowCaptureTest : CaptureTest {
    WindowCaptureTest() : CaptureTest(CaptureChoice::Window) {}
};

TEST(ScreenDepthTest, GivesTheExactColorOfEachPixel) {
    const struct {
        const char* screen;
        std::uint32_t pixel;
        platform::Color color;
    } depths[]{{"800x600x24", 0xFF0E0D, {1.0, 14 / 255.0, 13 / 255.0}},
               {"800x600x30", (1023u << 20) | (56u << 10) | 1u, {1.0, 56 / 1023.0, 1 / 1023.0}},
               {"800x600x16", (31u << 11) | (4u << 5) | 1u, {1.0, 4 / 63.0, 1 / 31.0}}};
    for (const auto& depth : depths) {
        SCOPED_TRACE(depth.screen);
        XvfbServer server(depth.screen);
        XClient painter(server.display());
        painter.fill(0, 0, 800, 600, 0);
        painter.fill(7, 3, 1, 1, depth.pixel);
        const auto image = X11ScreenCapture(server.display()).capture({5, 3, 4, 1});
        ASSERT_THAT(image, Spans(0, 4));
        for (const int x : {0, 1, 2, 3})
            EXPECT_EQ(image->view().colorAt(x), x == 2 ? depth.color : platform::Color{}) << x;
    }
}

TEST_F(CaptureTest, LeavesOutWhatLiesBeyondTheScreen) {
    const double infinity = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THAT(capture.capture({0, 0, infinity, 1}), Spans(0, 800));
    EXPECT_THAT(capture.capture({-10, 0, 20, 1}), Spans(10, 10));
    EXPECT_THAT(capture.capture({790, 599, 20, 1}), Spans(0, 10));
    EXPECT_THAT(capture.capture({-5, -1, 10000, 2}), Spans(5, 800));
    // Pixels belong to the rectangle by their centres.
    EXPECT_THAT(capture.capture({0.4, 0, 2.2, 1}), Spans(0, 3));
    EXPECT_THAT(capture.capture({0.6, 0, 1.8, 1}), Spans(0, 1));
    const double outside[][3]{{800, 0, 10},      {-10, 0, 10}, {0, 600, 10},
                              {0, -1, 10},       {5, 0, 0},    {5, 0, -3},
                              {nan, 0, 10},      {0, 0, nan},  {-infinity, 0, infinity},
                              {-1e300, 0, 2e300}};
    for (const auto& [x, y, width] : outside)
        EXPECT_EQ(capture.capture({x, y, width, 1}), std::nullopt) << x << ' ' << y << ' ' << width;
}

TEST_F(CaptureTest, FollowsMonitorsAndModes) {
    client.fill(0, 0, 800, 600, kBlue);
    client.fill(450, 20, 1, 1, kRed);
    EXPECT_EQ(capture.activeDisplayCount(), 1);
    xrandr({"--setmonitor", "*right", "300/80x500/130+450+20", "none"});
    ASSERT_TRUE(becomesWide(300));
    EXPECT_EQ(firstPixel(), kRed);
    EXPECT_THAT(capture.capture({-2, 0, 4, 1}), Spans(2, 2));
    EXPECT_EQ(capture.activeDisplayCount(), 1);
    xrandr({"--delmonitor", "right"});
    ASSERT_TRUE(becomesWide(800));

    xrandr({"--newmode", "small", "25", "640", "656", "752", "800", "480", "490", "492", "525"});
    xrandr({"--addmode", "screen", "small"});
    xrandr({"--output", "screen", "--mode", "small"});
    ASSERT_TRUE(becomesWide(40, {600, 0, 100, 1}));
    EXPECT_EQ(capture.capture({0, 480, 10, 1}), std::nullopt);
}

TEST_F(CaptureTest, TheDisplayIsTheOneThatTheGamesWindowIsOn) {
    client.fill(100, 0, 1, 1, kRed);
    client.fill(400, 310, 1, 1, kGreen);
    // Neither is the primary one: the main one is the nearest to the top left.
    xrandr({"--setmonitor", "other", "400/100x290/100+400+310", "none"});
    xrandr({"--setmonitor", "main", "300/100x600/150+100+0", "screen"});
    ASSERT_TRUE(becomes(kRed));
    const auto game = client.createWindow(kGameClass);
    client.place(game, 450, 350, 200, 100);
    client.show(game);
    ASSERT_TRUE(becomes(kGreen));
    client.place(game, 150, 350, 200, 100);
    ASSERT_TRUE(becomes(kRed));
    client.place(game, 390, 350, 200, 100);
    ASSERT_TRUE(becomes(kGreen)) << "the middle of the window tells";
    client.place(game, 500, 0, 200, 100);
    ASSERT_TRUE(becomes(kRed)) << "a window beyond all displays is on the main one";
    client.place(game, 500, 350, 200, 100);
    ASSERT_TRUE(becomes(kGreen));
    client.hide(game);
    EXPECT_TRUE(becomes(kRed));
}

TEST_F(CaptureTest, SendsOneRequestForEachCycleAndNothingElse) {
    const auto cycles = [&](int count) {
        const std::uint64_t before = capture.bytesSent();
        for (int cycle = 0; cycle < count; ++cycle) {
            EXPECT_EQ(capture.activeDisplayCount(), 1);
            EXPECT_TRUE(capture.capture({0, 0, 80, 1}));
        }
        return capture.bytesSent() - before;
    };
    cycles(1);
    EXPECT_EQ(cycles(10), 10 * sizeof(xcb_get_image_request_t));
}

TEST_F(CaptureTest, TakesALostServerForAnOutageAndFindsItAgain) {
    ASSERT_TRUE(capture.capture({0, 0, 80, 1}));
    server.kill();
    EXPECT_EQ(capture.capture({0, 0, 80, 1}), std::nullopt);
    EXPECT_LT(millisecondsOf([&] {
                  for (int cycle = 0; cycle < 100; ++cycle)
                      EXPECT_EQ(capture.activeDisplayCount(), 0);
              }),
              5000);
    XvfbServer again("640x480x24", server.number());
    ASSERT_TRUE(becomesWide(40, {600, 0, 80, 1}));
    EXPECT_EQ(capture.activeDisplayCount(), 1);
}

TEST_F(WindowCaptureTest, GoesOnWithoutAServerThatStandsStill) {
    X11ScreenCapture screen(server.display());
    shownWindow(kGameClass, kRed);
    ASSERT_TRUE(becomes(kRed));
    server.process().signal(SIGSTOP);
    for (X11ScreenCapture* const each : {&screen, &capture}) {
        const auto cycle = [&] { EXPECT_EQ(each->capture({0, 0, 80, 1}), std::nullopt); };
        EXPECT_GE(millisecondsOf(cycle), kReplyPatience / 1ms);
        EXPECT_EQ(each->activeDisplayCount(), 1);
        EXPECT_LT(millisecondsOf([&] {
                      for (int i = 0; i < 100; ++i)
                          cycle();
                  }),
                  50 * kReplyPatience / 1ms);
    }
    std::optional<X11ScreenCapture> late;
    EXPECT_LT(millisecondsOf([&] { late.emplace(server.display()); }), 10'000);
    EXPECT_EQ(late->activeDisplayCount(), 0);

    server.process().signal(SIGCONT);
    EXPECT_TRUE(becomes(kRed));
    EXPECT_TRUE(eventually([&] { return late->capture({0, 0, 80, 1}).has_value(); }));
}

TEST_F(WindowCaptureTest, FollowsTheGamesWindow) {
    EXPECT_EQ(firstPixel(), std::nullopt);
    EXPECT_EQ(capture.activeDisplayCount(), 1);
    const auto editor = shownWindow("editor\0Editor\0"s, kBlue, 0, 0);
    const auto game = shownWindow(kGameClass, kRed);
    ASSERT_TRUE(becomes(kRed));
    EXPECT_THAT(capture.capture({-5, 0, 10, 1}), Spans(5, 5));
    EXPECT_EQ(capture.capture({0, 100, 10, 1}), std::nullopt);

    client.place(game, 200, 90, 60, 140);
    ASSERT_TRUE(becomesWide(60));
    EXPECT_THAT(capture.capture({0, 120, 10, 1}), Spans(0, 10));
    client.hide(game);
    ASSERT_TRUE(becomes(std::nullopt));
    client.show(game);
    client.fill(game, 0, 0, 60, 140, kGreen);
    ASSERT_TRUE(becomes(kGreen));
    client.destroy(game);
    ASSERT_TRUE(becomes(std::nullopt));
    client.setText(editor, XCB_ATOM_WM_CLASS, kGameClass);
    ASSERT_TRUE(becomes(kBlue)) << "a window becomes the game's";
    client.setText(editor, XCB_ATOM_WM_CLASS, "x\0X\0"s);
    ASSERT_TRUE(becomes(std::nullopt));

    using enum CaptureState;
    EXPECT_THAT(told, ElementsAre(NoWindow, Window, NoWindow, Window, NoWindow, Window, NoWindow));
}

TEST_F(WindowCaptureTest, FindsWindowsInFramesAndByTheirTitle) {
    // As a window manager without a list does it: the window is in two frames, and the outer is shown last.
    const auto outer = client.createWindow("");
    const auto inner = client.createWindow("");
    const auto game = client.createWindow(kGameClass);
    client.reparent(inner, outer);
    client.reparent(game, inner);
    client.show(game);
    client.show(outer);
    EXPECT_EQ(firstPixel(), std::nullopt);
    client.show(inner);
    client.fill(game, 0, 0, 100, 100, kRed);
    ASSERT_TRUE(becomes(kRed));
    client.hide(outer);
    ASSERT_TRUE(becomes(std::nullopt));

    const auto proton = shownWindow("steam_app_1\0steam_app_1\0"s, kGreen);
    EXPECT_EQ(firstPixel(), std::nullopt);
    client.setText(proton, XCB_ATOM_WM_NAME, "World of Warcraft");
    EXPECT_TRUE(becomes(kGreen));
}

TEST_F(WindowCaptureTest, TakesTheLargestWindowAndOfEqualOnesTheActive) {
    shownWindow(kGameClass, kRed, 0, 0, 50, 20);
    ASSERT_TRUE(becomes(kRed));
    const auto second = shownWindow(kGameClass, kGreen, 0, 100, 300, 200);
    ASSERT_TRUE(becomes(kGreen));
    const auto third = shownWindow(kGameClass, kBlue, 400, 100, 300, 200);
    for (const auto& [window, pixel] : {std::pair(third, kBlue), std::pair(second, kGreen)}) {
        client.setNumber(client.root(), client.atom("_NET_ACTIVE_WINDOW"), window);
        ASSERT_TRUE(becomes(pixel));
    }
    client.place(second, 0, 100, 10, 10);
    EXPECT_TRUE(becomes(kBlue));
    capture.rest();
    EXPECT_EQ(capture.bytesSent(), 0U);
    EXPECT_TRUE(becomes(kBlue)) << "it connects again";
}

TEST_F(WindowCaptureTest, OutlivesWindowsThatComeAndGo) {
    std::jthread others([&](const std::stop_token& stop) {
        XClient busy(server.display());
        for (int i = 0; !stop.stop_requested(); ++i) {
            const auto game = busy.createWindow(kGameClass);
            const auto odd = busy.createWindow(std::string(static_cast<std::size_t>(i % 7), '\xFF') + "\0"s);
            busy.show(game);
            busy.setText(odd, XCB_ATOM_WM_CLASS, "steam_app_"s + std::string(50000, '\0'));
            busy.show(odd);
            busy.reparent(game, odd);
            busy.place(game, -50, i % 100, 1 + i % 90, 1);
            busy.setNumber(odd, XCB_ATOM_WM_CLASS, 7);
            busy.destroy(odd);
        }
    });
    for (int cycle = 0; cycle < 1000; ++cycle)
        capture.capture({0, 0, 80, 1});
    others.request_stop();
    others.join();
    EXPECT_TRUE(becomes(std::nullopt));
    shownWindow(kGameClass, kRed);
    EXPECT_TRUE(becomes(kRed));
}

TEST_F(CaptureTest, TheScreenIsReadUnlessTheSessionIsAWaylandOne) {
    const std::string display = server.display();
    const auto stateOf = [](const std::string& name, CaptureChoice choice = CaptureChoice::Automatic) {
        return X11ScreenCapture(name, choice).state();
    };
    ::setenv("DISPLAY", display.c_str(), 1);
    EXPECT_EQ(stateOf(""), CaptureState::Screen);
    ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    EXPECT_EQ(stateOf(""), CaptureState::NoWindow);
    EXPECT_EQ(stateOf("", CaptureChoice::Screen), CaptureState::Screen);
    EXPECT_EQ(stateOf(display), CaptureState::Screen);
    ::unsetenv("WAYLAND_DISPLAY");
    ::unsetenv("DISPLAY");

    const CaptureCheck check = checkCapture(display, CaptureChoice::Automatic, {2, 0, 80, 1});
    EXPECT_EQ(check.server, DisplayServer::X11);
    EXPECT_EQ(check.mainWidth, 800);
    EXPECT_TRUE(check.captureTime);
    EXPECT_EQ(check.problem, "");
    const CaptureCheck outside = checkCapture(display, CaptureChoice::Automatic, {800, 0, 80, 1});
    EXPECT_FALSE(outside.captureTime);
    EXPECT_NE(outside.problem, "");
    server.kill();
    EXPECT_EQ(stateOf(display), CaptureState::NoServer);
    EXPECT_EQ(checkCapture(display, CaptureChoice::Automatic, {}).server, DisplayServer::None);
}

} // namespace
} // namespace glimra::desktop
