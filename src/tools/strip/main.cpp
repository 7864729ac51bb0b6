#include "tools/strip/player.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <iostream>
#include <string>
#include <vector>

using namespace glimra::tools;

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kBadArguments = 2;
constexpr int kStoppedBySignal = 128;

constexpr const char* kUsage =
    "Usage: glimra-strip [--display NAME] [--left N] [--width N] [--window CLASS] [--hold MS] [--timestamps] "
    "COMMAND";

constexpr const char* kCommandHelp = R"(COMMAND:
  send TOKEN...       show each token: announce frame, confirm frame, dark frame
  frame RRGGBB x 11   show eleven colours until stopped
  calibrate           show the test pattern until stopped
  off                 show a dark strip until stopped
  demo                play the demonstration
  -                   read commands from standard input, one a line; what a line
                      shows stays until the next; besides those above:
                      wait MS, stage NAME (prints it), # comment

A TOKEN is one character U+0000 to U+007F, or one of ` [ ] { } and one such
character. \xHH, \0 and \\ stand for awkward characters.)";

struct Options {
    std::string display;
    StripPlace place;
    int holdMs = 100;
    bool timestamps = false;
    std::vector<std::string> command;
};

int complain(int status, const std::string& text) {
    std::cerr << "glimra-strip: " << text << '\n';
    return status;
}

int complainOfCommand(const std::string& text) {
    return complain(kBadArguments, text + '\n' + kUsage + "\n--help tells more.");
}

class HelpFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App*, std::string) const override { return kUsage + std::string("\n"); }
};

void describe(CLI::App& app, Options& options) {
    app.formatter(std::make_shared<HelpFormatter>());
    app.footer(kCommandHelp);
    app.set_version_flag("--version", GLIMRA_VERSION);
    app.add_option("--display", options.display, "X display (default: the one that DISPLAY names)");
    app.add_option("--left", options.place.left, "left edge of the strip on the main display, in pixels")
        ->check(CLI::Range(0, 16383))
        ->capture_default_str();
    // Narrower than this, a cell would have no pixel.
    app.add_option("--width", options.place.width, "width of the strip in pixels")
        ->check(CLI::Range(11, 16383))
        ->capture_default_str();
    app.add_option("--window", options.place.windowClass,
                   "show the strip in an ordinary window of this class, not above all windows")
        ->type_name("CLASS");
    app.add_option("--hold", options.holdMs, "how long each frame of a token stays, in milliseconds")
        ->check(CLI::Range(1, 60000))
        ->capture_default_str();
    app.add_flag("--timestamps", options.timestamps,
                 "print when each confirm frame was painted and each stage began, as JSON lines");
    // What follows the first word that is no option is a command; tokens may look like options.
    app.prefix_command();
}

/// Reads a file line by line, as its lines come. The last one need not end with a line feed.
class LineReader {
public:
    explicit LineReader(int file) : m_file(file) {}

    /// The next line that is already here; none when more has to be read.
    std::optional<std::string> next() {
        const auto end = m_buffer.find('\n');
        if (end == std::string::npos && !(m_ended && !m_buffer.empty()))
            return std::nullopt;
        ++m_number;
        const std::string line = m_buffer.substr(0, end);
        m_buffer.erase(0, end == std::string::npos ? end : end + 1);
        return line;
    }

    bool ended() const { return m_ended; }
    /// The number of the last line, counted from 1.
    int number() const { return m_number; }

    /// Reads what is there. Throws CommandError when a line has no end.
    void readMore() {
        constexpr std::size_t kLongestLine = 1 << 16;
        char bytes[4096];
        const ssize_t count = read(m_file, bytes, sizeof bytes);
        m_ended = count <= 0;
        if (count > 0)
            m_buffer.append(bytes, static_cast<std::size_t>(count));
        if (m_buffer.size() <= kLongestLine)
            return;
        ++m_number;
        throw CommandError("the line is too long");
    }

private:
    int m_file;
    std::string m_buffer;
    int m_number = 0;
    bool m_ended = false;
};

int playInput(Player& player) {
    LineReader reader(STDIN_FILENO);
    try {
        while (true) {
            while (const auto line = reader.next())
                for (const Action& action : parseLine(*line))
                    player.play(action);
            if (reader.ended())
                return kDone;
            player.awaitInput(STDIN_FILENO);
            reader.readMore();
        }
    } catch (const CommandError& error) {
        return complain(kBadArguments, "line " + std::to_string(reader.number()) + ": " + error.what());
    }
}

int playCommand(Player& player, const std::vector<Action>& actions) {
    for (const Action& action : actions)
        player.play(action);
    if (!std::holds_alternative<ShowFrame>(actions.back()))
        return kDone;
    try {
        player.stay();
    } catch (const Stopped&) {
        return kDone;
    }
}

int run(const Options& options) {
    const bool fromInput = options.command == std::vector<std::string>{"-"};
    // Before the display is opened, so that a command can be checked without one.
    const std::vector<Action> actions = fromInput ? std::vector<Action>{} : parseCommand(options.command);
    if (!fromInput && actions.empty())
        return complainOfCommand("a COMMAND is missing");
    Waiter waiter;
    StripPainter painter(options.display, options.place);
    Player player(painter, waiter, {std::chrono::milliseconds(options.holdMs), options.timestamps});
    return fromInput ? playInput(player) : playCommand(player, actions);
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app(
        "Stands in for the game's add-on: paints its strip of coloured cells at the top of an X display.",
        "glimra-strip");
    Options options;
    describe(app, options);
    try {
        app.parse(argc, argv);
        options.command = app.remaining();
        return run(options);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success))
            return app.exit(error);
        return complainOfCommand(error.what());
    } catch (const CommandError& error) {
        return complainOfCommand(error.what());
    } catch (const Stopped& stopped) {
        return kStoppedBySignal + stopped.signal;
    } catch (const std::exception& error) {
        return complain(kFailed, error.what());
    }
}
