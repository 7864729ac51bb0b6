#include "desktop/options.h"

#include <CLI/CLI.hpp>

#include <filesystem>

namespace glimra::desktop {

namespace {

std::string noFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored) ? path + " is a folder" : std::string{};
}

} // namespace

std::variant<Options, ExitStatus> parseOptions(int argc, const char* const* argv) {
    Options options;
    const std::vector<std::string> keyboards{"auto", "virtual"};
    CLI::App command("Puts what happens in the game on the keys of an RGB keyboard.", "glimra");
    command.set_version_flag("--version", "glimra " GLIMRA_VERSION);
    command.add_option("--keyboard", options.keyboard, "The keyboard to light (default: auto)")
        ->type_name("NAME")
        ->check(CLI::IsMember(keyboards));
    command.add_option("--settings", options.settingsFile, "Where the settings are kept")
        ->type_name("FILE")
        ->check(noFolder);
    command.add_option("--trace", options.traceFile, "Write what leaves the application as JSON lines")
        ->type_name("FILE")
        ->check(noFolder);
    command.add_option("--display", options.captureDisplay, "The X display to read (default: $DISPLAY)")
        ->type_name("NAME");
    command
        .add_option_function<std::string>(
            "--capture",
            [&options](const std::string& name) {
                options.capture = captureChoiceNamed(name).value_or(CaptureChoice::Automatic);
            },
            "What is captured: the screen or the game's own window (default: auto, what the desktop allows)")
        ->type_name("WAY")
        ->check(CLI::IsMember({"auto", "screen", "window"}));
    command.add_flag("--log", options.printLog, "Print the message log to standard output");
    try {
        command.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return ExitStatus{command.exit(error) == 0 ? 0 : kUsageError};
    }
    return options;
}

} // namespace glimra::desktop
