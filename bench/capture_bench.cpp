// What a capture cycle costs, in this program and in the X server, beside the least that it could cost: a
// bare loop of the same request. Starts its own servers; ends with 1 when the capture misses its goal.

#include "desktop/x11/screen_capture.h"
#include "support/x_server.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace glimra;

constexpr int kStripWidth = 80;
constexpr int kCellCount = 11;
constexpr int kRounds = 15;
/// The capture's CPU time may be this many times the bare loop's.
constexpr double kGoal = 1.5;

/// User and system time of a process, to the nanosecond: /proc counts it in ticks of a hundredth of a second.
double cpuSeconds(pid_t process) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0)
        throw std::runtime_error("no CPU clock for process " + std::to_string(process));
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// CPU seconds of each round, per cycle.
struct Samples {
    std::vector<double> seconds{};

    double median() const {
        std::vector<double> sorted = seconds;
        std::sort(sorted.begin(), sorted.end());
        return sorted[sorted.size() / 2];
    }
};

/// One way to get at the pixels, with what it has cost so far.
struct Way {
    std::string name;
    int cyclesPerRound;
    std::function<void()> cycle;
    Samples client{};
    Samples server{};

    void runRound(pid_t serverProcess) {
        const double serverBefore = cpuSeconds(serverProcess);
        const double clientBefore = cpuSeconds(getpid());
        for (int i = 0; i < cyclesPerRound; ++i)
            cycle();
        client.seconds.push_back((cpuSeconds(getpid()) - clientBefore) / cyclesPerRound);
        server.seconds.push_back((cpuSeconds(serverProcess) - serverBefore) / cyclesPerRound);
    }
};

/// A strip's cells, all lit, across the left end of the top row, on the screen and in a window like the
/// game's.
void paintStrips(tests::XClient& client) {
    constexpr std::uint32_t kGreen = 0x00FF00;
    const xcb_window_t window = client.createWindow(std::string("wow.exe\0wow.exe\0", 16));
    client.place(window, 0, 100, 640, 480);
    client.show(window);
    client.fill(window, 0, 0, kStripWidth, 1, kGreen);
    client.fill(0, 0, kStripWidth, 1, kGreen);
}

std::function<void()> bareRequests(desktop::Connection& connection, int width, int height) {
    return [&connection, width, height] {
        xcb_get_image_reply_t* reply = xcb_get_image_reply(
            connection.xcb(),
            xcb_get_image(connection.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection.root(), 0, 0,
                          static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), ~0u),
            nullptr);
        if (reply == nullptr)
            throw std::runtime_error("the server gives no image");
        std::free(reply);
    };
}

/// As the reader does it: is there a display, its row, the colour of each cell.
std::function<void()> captureCycles(platform::ScreenCapture& capture) {
    return [&capture] {
        if (capture.activeDisplayCount() == 0)
            throw std::runtime_error("no display");
        const auto image = capture.capture({0, 0, kStripWidth, 1});
        for (int cell = 0; cell < kCellCount; ++cell)
            if (!image ||
                image->view().colorAt(cell * kStripWidth / kCellCount) != platform::Color{0.0, 1.0, 0.0})
                throw std::runtime_error("the strip is not what was painted");
    };
}

/// Whether the capture meets its goal on a screen of this size.
bool measure(int width, int height) {
    tests::XvfbServer server(std::to_string(width) + "x" + std::to_string(height) + "x24");
    tests::XClient client(server.display());
    paintStrips(client);
    const auto connection = desktop::Connection::open(server.display());
    if (!connection)
        throw std::runtime_error("no connection to " + server.display());
    desktop::X11ScreenCapture screen(server.display(), desktop::CaptureChoice::Screen);
    desktop::X11ScreenCapture window(server.display(), desktop::CaptureChoice::Window);

    std::vector<Way> ways{{"bare request loop (floor)", 2000, bareRequests(*connection, kStripWidth, 1)},
                          {"capture cycle, screen", 2000, captureCycles(screen)},
                          {"capture cycle, game's window", 2000, captureCycles(window)},
                          {"whole screen, no shared memory", 8, bareRequests(*connection, width, height)}};
    for (int round = 0; round < kRounds; ++round)
        for (Way& way : ways)
            way.runRound(server.process().pid());

    std::printf("\n%d x %d, strip of %d pixels      client us  (ratio)   server us  (ratio)\n", width, height,
                kStripWidth);
    const Way& floor = ways.front();
    for (const Way& way : ways)
        std::printf("  %-32s %10.1f %8.2f %11.1f %8.2f\n", way.name.c_str(), way.client.median() * 1e6,
                    way.client.median() / floor.client.median(), way.server.median() * 1e6,
                    way.server.median() / floor.server.median());
    return std::max(ways[1].client.median(), ways[2].client.median()) <= kGoal * floor.client.median();
}

} // namespace

int main() {
    try {
        std::printf("CPU time per cycle, back to back, median of %d rounds\n", kRounds);
        const bool small = measure(1920, 1080);
        const bool large = measure(3840, 2160);
        std::printf("\ncapture cycle within %.1f times of the floor: %s\n", kGoal,
                    small && large ? "yes" : "no");
        return small && large ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "capture_bench: %s\n", error.what());
        return 2;
    }
}
