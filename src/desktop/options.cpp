#include "desktop/options.h"

#include "desktop/settings/settings_file.h"
#include "keyboards/drivers.h"
#include "lighting/lighting_state.h"

#include <CLI/CLI.hpp>

#include <arpa/inet.h>

#include <array>
#include <charconv>
#include <filesystem>

namespace glimra::desktop {

namespace {

std::string noFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored) ? path + " is a folder" : std::string{};
}

/// Rejects a path that exists but is no regular file: reading a device might never end, and saving would
/// replace it.
std::string noSettings(const std::string& path) {
    std::error_code ignored;
    const bool isOther =
        std::filesystem::exists(path, ignored) && !std::filesystem::is_regular_file(path, ignored);
    return path.empty() || isOther ? "\"" + path + "\" is no file" : std::string{};
}

std::vector<std::string> keyboardNames() {
    std::vector<std::string> names{std::string(keyboards::kAutomaticDriver)};
    for (const keyboards::DriverRow& driver : keyboards::driverRows())
        names.emplace_back(driver.name);
    return names;
}

bool isNumericAddress(const std::string& host) {
    in6_addr address{};
    return inet_pton(AF_INET, host.c_str(), &address) == 1 ||
           inet_pton(AF_INET6, host.c_str(), &address) == 1;
}

/// HOST, HOST:PORT or [IPv6 HOST]:PORT.
std::optional<keyboards::openrgb::ServerAddress> serverFromText(const std::string& text) {
    keyboards::openrgb::ServerAddress server{text};
    const std::size_t colon = text.rfind(':');
    if (colon != std::string::npos && !isNumericAddress(text)) {
        const char* const end = text.data() + text.size();
        const auto [rest, error] = std::from_chars(text.data() + colon + 1, end, server.port);
        if (error != std::errc{} || rest != end || server.port == 0)
            return std::nullopt;
        server.host = text.substr(0, colon);
        if (server.host.starts_with('[') && server.host.ends_with(']'))
            server.host = server.host.substr(1, server.host.size() - 2);
    }
    if (server.host != "localhost" && !isNumericAddress(server.host))
        return std::nullopt;
    return server;
}

void addKeyboardOptions(CLI::App& command, Options& options) {
    command
        .add_option("--keyboard", options.keyboard,
                    "How to light the keyboard (default: as set in the window, at first auto)")
        ->type_name("NAME")
        ->check(CLI::IsMember(keyboardNames()));
    command
        .add_option("--sdk", options.sdkLibrary, "The keyboard vendor's library (default: the usual places)")
        ->type_name("PATH")
        ->check(CLI::ExistingFile);
    command
        .add_option_function<std::string>(
            "--openrgb",
            [&options](const std::string& text) {
                options.openRgbServer = serverFromText(text);
                if (!options.openRgbServer)
                    throw CLI::ValidationError("--openrgb", text + " is no numeric address with a port");
            },
            "The OpenRGB server (default: 127.0.0.1:6742)")
        ->type_name("HOST[:PORT]");
    command
        .add_option("--openrgb-keyboard", options.openRgbKeyboard,
                    "Name of the server's keyboard, or part of it")
        ->type_name("NAME");
}

void addFileOptions(CLI::App& command, Options& options) {
    command.add_option("--settings", options.settingsFile, "Where the settings are kept")
        ->type_name("FILE")
        ->check(noSettings);
    command.add_option("--trace", options.traceFile, "Write what leaves the application as JSON lines")
        ->type_name("FILE")
        ->check(noFolder);
    command.add_option("--record", options.recordFile, "Write what comes in as a script for glimra-replay")
        ->type_name("FILE")
        ->check(noFolder);
}

void addCaptureOptions(CLI::App& command, Options& options) {
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
}

enum class Given { Nothing, OnOrOff, Profile };

struct CommandOption {
    const char* option;
    InstanceCommand::Kind kind;
    const char* help;
    Given given = Given::Nothing;
};

using Kind = InstanceCommand::Kind;
constexpr std::array<CommandOption, 10> kCommandOptions{{
    {"--quit", Kind::Quit, "Quit"},
    {"--status", Kind::Status, "Tell what it sees and does"},
    {"--reload", Kind::Reload, "Take settings that were changed in their file"},
    {"--test-pattern", Kind::TestPattern, "Show the test pattern"},
    {"--reset", Kind::Reset, "End all effects"},
    {"--calibrate", Kind::Calibrate, "Look for the game's strip on the screen"},
    {"--debug", Kind::Debug, "Turn debug mode on or off"},
    {"--fast-response", Kind::FastResponse, "Answer as fast as possible, or as usual", Given::OnOrOff},
    {"--end-stale-effects", Kind::EndStaleEffects, "End long effects once the game is gone, or leave them",
     Given::OnOrOff},
    {"--profile", Kind::Profile, "Show a color profile, 1 to 9", Given::Profile},
}};

void addCommand(CLI::App& group, const CommandOption& row, Options& options) {
    const auto take = [&options, kind = row.kind](int number) {
        options.command = InstanceCommand{kind, number};
    };
    switch (row.given) {
    case Given::Nothing:
        group.add_flag_callback(
            row.option, [take] { take(0); }, row.help);
        break;
    case Given::OnOrOff:
        group
            .add_option_function<std::string>(
                row.option, [take](const std::string& word) { take(word == "on" ? 1 : 0); }, row.help)
            ->type_name("on|off")
            ->check(CLI::IsMember({"on", "off"}));
        break;
    case Given::Profile:
        group.add_option_function<int>(row.option, take, row.help)
            ->type_name("N")
            ->check(CLI::Range(1, static_cast<int>(lighting::kProfileCount)));
        break;
    }
}

/// What the program that is running shall do.
CLI::Option_group* addCommands(CLI::App& command, Options& options) {
    CLI::Option_group* const running =
        command.add_option_group("To the Glimra that is running", "Only one of them at a time");
    for (const CommandOption& row : kCommandOptions)
        addCommand(*running, row, options);
    running->require_option(0, 1);
    command.add_flag("--json")->description("With --status: as JSON")->needs(running->get_option("--status"));
    return running;
}

/// What ends without a window: a command, the add-on, the doctor.
void addErrands(CLI::App& command, Options& options) {
    CLI::Option_group* const running = addCommands(command, options);
    CLI::Option* const install =
        command
            .add_option("--install-addon", options.installAddon,
                        "Install the game's add-on: in the clients of a folder, or in all that are found")
            ->type_name("[FOLDER]")
            ->expected(0, 1);
    running->excludes(install);
    CLI::App* const doctor =
        command.add_subcommand("doctor", "Tell what works here, what does not, and how to mend it")
            ->fallthrough()
            ->excludes(install);
    CLI::Option* const json = doctor->add_flag("--json")->description("As JSON");
    doctor->final_callback([&options, json] {
        options.doctor = json->empty() ? doctor::ReportForm::Words : doctor::ReportForm::Json;
    });
}

} // namespace

QString settingsPath(const Options& options) {
    return options.settingsFile ? QString::fromStdString(*options.settingsFile) : SettingsFile::defaultPath();
}

QStringList doctorArguments(const Options& options) {
    QStringList arguments{"doctor"};
    const auto add = [&arguments](const char* name, const std::string& value) {
        if (!value.empty())
            arguments << name << QString::fromStdString(value);
    };
    add("--settings", options.settingsFile.value_or(""));
    add("--keyboard", options.keyboard.value_or(""));
    add("--sdk", options.sdkLibrary.value_or(""));
    if (options.openRgbServer)
        add("--openrgb",
            "[" + options.openRgbServer->host + "]:" + std::to_string(options.openRgbServer->port));
    add("--openrgb-keyboard", options.openRgbKeyboard);
    add("--display", options.captureDisplay);
    add("--capture", std::string(captureChoiceName(options.capture)));
    return arguments;
}

std::variant<Options, ExitStatus> parseOptions(int argc, const char* const* argv) {
    Options options;
    CLI::App command("Puts what happens in the game on the keys of an RGB keyboard.", "glimra");
    command.set_version_flag("--version", "glimra " GLIMRA_VERSION);
    addKeyboardOptions(command, options);
    addFileOptions(command, options);
    addCaptureOptions(command, options);
    command.add_flag("--hidden", options.hidden, "Start in the tray or, where there is none, minimized");
    command.add_flag("--no-window", options.noWindow, "Run without any window, as a service")
        ->excludes("--hidden");
    command.add_flag("--log", options.printLog, "Print the message log to standard output");
    addErrands(command, options);
    try {
        command.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return ExitStatus{command.exit(error) == 0 ? 0 : kUsageError};
    }
    if (command.count("--json") > 0)
        options.command->number = 1;
    return options;
}

} // namespace glimra::desktop
