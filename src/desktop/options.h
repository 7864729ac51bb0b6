#pragma once

#include "desktop/doctor/doctor.h"
#include "desktop/services/instance_channel.h"
#include "desktop/x11/capture_state.h"
#include "keyboards/openrgb/connection.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <variant>

namespace glimra::desktop {

/// The options of the command line.
struct Options {
    /// Name of an existing keyboard driver; when absent, the settings decide.
    std::optional<std::string> keyboard;
    /// Path of the vendor's library.
    std::optional<std::string> sdkLibrary;
    /// The OpenRGB server, if the user gave one.
    std::optional<keyboards::openrgb::ServerAddress> openRgbServer;
    /// Name of the server's keyboard, or part of it; when empty, the keyboard with the most keys is used.
    std::string openRgbKeyboard;
    /// Replaces the user's own settings file.
    std::optional<std::string> settingsFile;
    std::optional<std::string> traceFile;
    /// The application's input is written to this file, as a replay script.
    std::optional<std::string> recordFile;
    /// X display to capture; empty for $DISPLAY.
    std::string captureDisplay;
    /// How the strip is captured.
    CaptureChoice capture = CaptureChoice::Automatic;
    /// Start in the tray or, where there is none, minimized.
    bool hidden = false;
    /// Run without any window.
    bool noWindow = false;
    /// Print the message log to standard output.
    bool printLog = false;
    /// A command for the running instance. This process only sends it and exits.
    std::optional<InstanceCommand> command;
    /// Only install the add-on: into the clients in this folder or, when it is empty, into all that are
    /// found.
    std::optional<std::string> installAddon;
    /// Only report what works here, in this form.
    std::optional<doctor::ReportForm> doctor;
};

/// Path of the settings file.
QString settingsPath(const Options& options);

/// For a doctor who looks at what a program with these options uses.
QStringList doctorArguments(const Options& options);

/// The program must end with this status; all output has been printed.
struct ExitStatus {
    int status = 0;
};

/// Exit status after a wrong call of the program.
inline constexpr int kUsageError = 2;

/// Reads the command line. Prints help, the version or an error when needed.
std::variant<Options, ExitStatus> parseOptions(int argc, const char* const* argv);

} // namespace glimra::desktop
