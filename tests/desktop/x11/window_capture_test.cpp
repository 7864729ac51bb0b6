#include "desktop/x11/capture_check.h"
#include "desktop/x11/screen_capture.h"
#include "support/x_server.h"

#include <gmock/gmock.h>

#include <atomic>

namespace glimra::desktop {
namespace {

using namespace std::string_literals;
using glimra::tests::ChildProcess;
using glimra::tests::eventually;
using glimra::tests::run;
using glimra::tests::XClient;
using glimra::tests::XvfbServer;

const std::string kGameClass = "wow.exe\0wow.exe\0"s;
constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kGreen = 0x00FF00;
constexpr std::uint32_t kBlue = 0x0000FF;

/// A server whose client shows the windows, and the capture of the game's.
class WindowCaptureTest : public ::testing::Test {
protected:
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
        return image ? image->view().pixelAt(0) : std::nullopt;
    }
    bool becomes(std::optional<std::uint32_t> pixel) {
        return eventually([&] {
            const auto first = firstPixel();
            return first.has_value() == pixel.has_value() && (!pixel || (*first & 0xFFFFFF) == *pixel);
        });
    }
    bool becomesWide(std::size_t width) {
        return eventually([&] {
            const auto image = capture.capture({0, 0, 2000, 1});
            return image && image->pixels.size() == width;
        });
    }

    XvfbServer server{"800x600x24"};
    XClient client{server.display()};
    std::vector<CaptureState> told;
    X11ScreenCapture capture{server.display(), CaptureChoice::Window,
                             [this](CaptureState state) { told.push_back(state); }};
};

TEST_F(WindowCaptureTest, FollowsTheGamesWindow) {
    EXPECT_EQ(firstPixel(), std::nullopt);
    EXPECT_EQ(capture.activeDisplayCount(), 1);
    const auto editor = shownWindow("editor\0Editor\0"s, kBlue, 0, 0);
    const auto game = shownWindow(kGameClass, kRed);
    client.fill(game, 30, 7, 1, 1, kGreen);
    ASSERT_TRUE(becomes(kRed));
    EXPECT_EQ(capture.capture({28, 7, 4, 1})->view().colorAt(2), (platform::Color{0.0, 1.0, 0.0}));
    EXPECT_EQ(capture.capture({-5, 0, 10, 1})->firstColumn, 5);
    EXPECT_EQ(capture.capture({0, 100, 10, 1}), std::nullopt);

    client.place(game, 200, 90, 60, 40);
    ASSERT_TRUE(becomesWide(60));
    client.place(game, 200, 90, 300, 40);
    ASSERT_TRUE(becomesWide(300));
    client.hide(game);
    ASSERT_TRUE(becomes(std::nullopt));
    client.show(game);
    client.fill(game, 0, 0, 300, 40, kGreen);
    ASSERT_TRUE(becomes(kGreen));
    client.destroy(game);
    ASSERT_TRUE(becomes(std::nullopt));
    client.setText(editor, XCB_ATOM_WM_CLASS, kGameClass);
    ASSERT_TRUE(becomes(kBlue)) << "a window becomes the game's";
    client.setText(editor, XCB_ATOM_WM_CLASS, "x\0X\0"s);
    ASSERT_TRUE(becomes(std::nullopt));

    using enum CaptureState;
    EXPECT_THAT(told, ::testing::ElementsAre(NoWindow, Window, NoWindow, Window, NoWindow, Window, NoWindow));
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
    const auto activate = [&](xcb_window_t window) {
        client.setNumber(client.root(), client.atom("_NET_ACTIVE_WINDOW"), window);
    };
    activate(third);
    ASSERT_TRUE(becomes(kBlue));
    activate(second);
    ASSERT_TRUE(becomes(kGreen));
    client.place(second, 0, 100, 10, 10);
    EXPECT_TRUE(becomes(kBlue));
}

TEST_F(WindowCaptureTest, OutlivesWindowsThatComeAndGo) {
    std::atomic<bool> goesOn = true;
    std::thread others([&] {
        XClient busy(server.display());
        for (int i = 0; goesOn; ++i) {
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
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (std::chrono::steady_clock::now() < end)
        capture.capture({0, 0, 80, 1});
    goesOn = false;
    others.join();
    EXPECT_TRUE(becomes(std::nullopt));
    shownWindow(kGameClass, kRed);
    EXPECT_TRUE(becomes(kRed));
}

TEST_F(WindowCaptureTest, ConnectsAgainAfterARest) {
    shownWindow(kGameClass, kRed);
    ASSERT_TRUE(becomes(kRed));
    capture.rest();
    EXPECT_EQ(capture.bytesSent(), 0U);
    EXPECT_TRUE(becomes(kRed));
}

TEST(CaptureChoiceTest, TheScreenIsReadUnlessTheSessionIsAWaylandOne) {
    XvfbServer server;
    const auto stateOf = [](const std::string& display, CaptureChoice choice = CaptureChoice::Automatic) {
        return X11ScreenCapture(display, choice).state();
    };
    ::unsetenv("WAYLAND_DISPLAY");
    ::setenv("DISPLAY", server.display().c_str(), 1);
    EXPECT_EQ(stateOf(""), CaptureState::Screen);
    ::setenv("WAYLAND_DISPLAY", "wayland-0", 1);
    EXPECT_EQ(stateOf(""), CaptureState::NoWindow);
    EXPECT_EQ(stateOf("", CaptureChoice::Screen), CaptureState::Screen);
    EXPECT_EQ(stateOf(server.display()), CaptureState::Screen);
    EXPECT_EQ(stateOf(":987"), CaptureState::NoServer);
    ::unsetenv("WAYLAND_DISPLAY");
    ::unsetenv("DISPLAY");

    const CaptureCheck check = checkCapture(server.display(), CaptureChoice::Automatic, {2, 0, 80, 1});
    EXPECT_EQ(check.server, DisplayServer::X11);
    EXPECT_EQ(check.mainWidth, 800);
    EXPECT_TRUE(check.captureTime);
    EXPECT_EQ(check.problem, "");
    const CaptureCheck outside = checkCapture(server.display(), CaptureChoice::Automatic, {800, 0, 80, 1});
    EXPECT_FALSE(outside.captureTime);
    EXPECT_NE(outside.problem, "");
    EXPECT_EQ(checkCapture(":987", CaptureChoice::Automatic, {}).server, DisplayServer::None);
}

TEST(DisplayOfTheGameTest, IsTheOneThatItsWindowIsOn) {
    XvfbServer server;
    const std::string display = server.display();
    XClient client(display);
    client.fill(0, 0, 1, 1, kRed);
    client.fill(400, 30, 1, 1, kGreen);
    X11ScreenCapture capture(display);
    const auto becomes = [&](platform::Color color) {
        return eventually([&] {
            const auto image = capture.capture({0, 0, 1, 1});
            return image && image->view().colorAt(0) == color;
        });
    };
    const platform::Color red{1.0, 0.0, 0.0};
    const platform::Color green{0.0, 1.0, 0.0};
    ASSERT_TRUE(becomes(red));
    ASSERT_EQ(run({"xrandr", "--setmonitor", "*left", "400/100x600/150+0+0", "screen"}, display), 0);
    ASSERT_EQ(run({"xrandr", "--setmonitor", "right", "400/100x500/130+400+30", "none"}, display), 0);
    const auto game = client.createWindow(kGameClass);
    client.place(game, 450, 100, 200, 100);
    client.show(game);
    ASSERT_TRUE(becomes(green));
    client.place(game, 100, 100, 200, 100);
    ASSERT_TRUE(becomes(red));
    client.place(game, 390, 100, 200, 100);
    ASSERT_TRUE(becomes(green)) << "the middle of the window tells";
    client.place(game, 500, 0, 200, 100);
    ASSERT_TRUE(becomes(red)) << "a window beyond all displays is on the main one";
    client.place(game, 500, 100, 200, 100);
    ASSERT_TRUE(becomes(green));
    client.hide(game);
    EXPECT_TRUE(becomes(red));
}

} // namespace
} // namespace glimra::desktop
