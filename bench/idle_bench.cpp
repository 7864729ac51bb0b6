// What the whole application costs with its window hidden (or shown with --shown, or none with --no-window)
// and nothing to do, beside an empty Qt program that makes the same request of the X server as often: twenty
// times a second or, with
// --fast, every 16 ms as with Fast Response. Both run at the same time on one Xvfb of its own. Ends with 1
// when the application misses its goal.

#include "desktop/x11/connection.h"
#include "support/x_server.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace glimra;
using namespace std::chrono_literals;

/// The application's CPU time may be this many times the reference's.
constexpr double kGoal = 1.2;
/// What a process may grow by after it has settled and still count as flat: the allocator's own motion.
constexpr long kFlatKib = 512;
constexpr auto kSettling = 4s;

/// User and system time of a process, to the nanosecond: /proc counts it in ticks of a hundredth of a second.
double cpuSeconds(pid_t process) {
    clockid_t clock{};
    timespec time{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0)
        throw std::runtime_error("no CPU clock for process " + std::to_string(process) + "; has it ended?");
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

long residentKib(pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/statm");
    long total = 0;
    long resident = 0;
    if (!(file >> total >> resident))
        throw std::runtime_error("no memory figures for process " + std::to_string(process));
    return resident * (sysconf(_SC_PAGESIZE) / 1024);
}

/// The windows on the screen that are large enough to be a program's main window.
std::vector<xcb_window_t> shownWindows(desktop::Connection& connection) {
    std::vector<xcb_window_t> windows;
    const auto tree =
        connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(connection.xcb(), connection.root()));
    if (!tree)
        return windows;
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i) {
        const auto attributes = connection.reply<xcb_get_window_attributes_reply_t>(
            xcb_get_window_attributes(connection.xcb(), children[i]));
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE)
            windows.push_back(children[i]);
    }
    return windows;
}

/// Takes the application's window off the screen, as minimising it does.
void hideItsWindow(desktop::Connection& connection) {
    if (!tests::eventually([&] { return !shownWindows(connection).empty(); }))
        throw std::runtime_error("glimra has shown no window");
    for (const xcb_window_t window : shownWindows(connection))
        xcb_unmap_window(connection.xcb(), window);
    if (!tests::eventually([&] { return shownWindows(connection).empty(); }))
        throw std::runtime_error("glimra's window can't be hidden");
}

struct Options {
    int seconds = 20;
    int memoryMinutes = 0;
    bool fast = false;
    bool shown = false;
    bool noWindow = false;
};

struct Programs {
    pid_t application;
    pid_t reference;
    pid_t server;
};

bool measureCpu(const Programs& programs, const Options& options) {
    const auto read = [&programs] {
        return std::vector{cpuSeconds(programs.application), cpuSeconds(programs.reference),
                           cpuSeconds(programs.server)};
    };
    const std::vector<double> before = read();
    const auto begin = std::chrono::steady_clock::now();
    std::this_thread::sleep_for(std::chrono::seconds(options.seconds));
    const std::vector<double> after = read();
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    const auto share = [&](std::size_t i) { return 100.0 * (after[i] - before[i]) / elapsed.count(); };

    const double ratio = share(0) / share(1);
    std::printf("CPU over %.1f s, share of one core\n", elapsed.count());
    std::printf("  empty Qt program with the request (floor)  %6.3f %%\n", share(1));
    const char* const window = options.noWindow ? "none  " : options.shown ? "shown " : "hidden";
    std::printf("  glimra, window %s, nothing to do       %6.3f %%\n", window, share(0));
    std::printf("  X server, for both                         %6.3f %%\n", share(2));
    std::printf("  ratio %.2f, goal %.2f: %s\n", ratio, kGoal, ratio <= kGoal ? "met" : "missed");
    return ratio <= kGoal;
}

bool measureMemory(const Programs& programs, int minutes) {
    std::printf("Memory over %d minutes, resident KiB\n", minutes);
    const long first = residentKib(programs.application);
    long last = first;
    for (int minute = 0; minute <= minutes; ++minute) {
        last = residentKib(programs.application);
        std::printf("  after %2d min  glimra %6ld   empty Qt program %6ld\n", minute, last,
                    residentKib(programs.reference));
        std::fflush(stdout);
        if (minute < minutes)
            std::this_thread::sleep_for(1min);
    }
    const bool flat = last - first <= kFlatKib;
    std::printf("  growth %ld KiB: %s\n", last - first, flat ? "flat" : "not flat");
    return flat;
}

bool run(const Options& options) {
    const std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    const std::filesystem::path kept = std::filesystem::temp_directory_path() / "glimra-idle-bench";
    const std::filesystem::path settings = kept / "glimra.ini";
    std::filesystem::remove_all(kept);
    std::filesystem::create_directory(kept);
    if (options.fast)
        std::ofstream(settings) << "[General]\nfastResponse=true\n";

    setenv("QT_QPA_PLATFORM", "xcb", 1);
    tests::XvfbServer server("1920x1080x24");
    const auto connection = desktop::Connection::open(server.display());
    if (!connection)
        throw std::runtime_error("no connection to " + server.display());
    std::vector<std::string> arguments{"glimra", "--keyboard", "virtual", "--settings", settings};
    if (options.noWindow)
        arguments.emplace_back("--no-window");
    tests::ChildProcess application(folder / "glimra", arguments, server.display());
    const tests::ChildProcess reference(folder / "idle_reference",
                                        {"idle_reference", options.fast ? "16" : "50"}, server.display());
    if (!options.shown && !options.noWindow)
        hideItsWindow(*connection);
    std::this_thread::sleep_for(kSettling);

    const Programs programs{application.pid(), reference.pid(), server.process().pid()};
    const bool quick = measureCpu(programs, options);
    const bool flat = options.memoryMinutes == 0 || measureMemory(programs, options.memoryMinutes);
    application.signal(SIGTERM);
    if (application.wait() != 0)
        throw std::runtime_error("glimra did not quit in the orderly way");
    std::filesystem::remove_all(kept);
    return quick && flat;
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App command("Measures the idle application beside an empty Qt program.", "idle_bench");
    command.add_flag("--fast", options.fast, "With Fast Response; for less than a minute");
    command.add_flag("--shown", options.shown, "With its window on the screen");
    command.add_flag("--no-window", options.noWindow, "Without any window");
    command.add_option("--seconds", options.seconds, "How long to measure")->check(CLI::Range(1, 3600));
    command.add_option("--memory", options.memoryMinutes, "Minutes to watch the memory after that")
        ->check(CLI::Range(0, 1440));
    CLI11_PARSE(command, argc, argv);
    try {
        return run(options) ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "idle_bench: %s\n", error.what());
        return 2;
    }
}
