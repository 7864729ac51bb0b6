#pragma once

#include "desktop/doctor/doctor.h"
#include "desktop/services/instance_channel.h"
#include "desktop/x11/capture_state.h"
#include "keyboards/openrgb/connection.h"

#include <QString>

#include <optional>
#include <string>
#include <variant>

namespace glimra::desktop {

/// What the command line asks for.
struct Options {
    /// Name of a keyboard driver, one of those that exist; where none is given the settings have it.
    std::optional<std::string> keyboard;
    /// The vendor's library.
    std::optional<std::string> sdkLibrary;
    /// The OpenRGB server, where one is named.
    std::optional<keyboards::openrgb::ServerAddress> openRgbServer;
    /// Name of the server's keyboard, or part of it; empty for the one with the most keys.
    std::string openRgbKeyboard;
    /// Instead of the user's own.
    std::optional<std::string> settingsFile;
    std::optional<std::string> traceFile;
    /// What comes in goes to this file, as a replay script.
    std::optional<std::string> recordFile;
    /// X display to capture; empty for the one in the environment.
    std::string captureDisplay;
    /// How the strip is captured.
    CaptureChoice capture = CaptureChoice::Automatic;
    /// Print the message log to standard output.
    bool printLog = false;
    /// What the program that is running shall do; this one only tells it.
    std::optional<InstanceCommand> command;
    /// Only to install the add-on: into the clients of this folder, or of all that are found where it is
    /// empty.
    std::optional<std::string> installAddon;
    /// Only to tell what works here, and in which form.
    std::optional<doctor::ReportForm> doctor;
};

/// The file that holds the settings.
QString settingsPath(const Options& options);

/// The program ends with this status, and everything has been said.
struct ExitStatus {
    int status = 0;
};

/// Status of a program that was called in a way it can't understand.
inline constexpr int kUsageError = 2;

/// Reads the command line; prints help, version or what is wrong with it.
std::variant<Options, ExitStatus> parseOptions(int argc, const char* const* argv);

} // namespace glimra::desktop
