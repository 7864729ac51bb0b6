#pragma once

#include "desktop/x11/capture_state.h"

#include <optional>
#include <string>
#include <variant>

namespace glimra::desktop {

/// What the command line asks for.
struct Options {
    /// Name of a keyboard driver, one of those that exist.
    std::string keyboard = "auto";
    std::optional<std::string> settingsFile;
    std::optional<std::string> traceFile;
    /// X display to capture; empty for the one in the environment.
    std::string captureDisplay;
    /// How the strip is captured.
    CaptureChoice capture = CaptureChoice::Automatic;
    /// Print the message log to standard output.
    bool printLog = false;
};

/// The program ends with this status, and everything has been said.
struct ExitStatus {
    int status = 0;
};

/// Status of a program that was called in a way it can't understand.
inline constexpr int kUsageError = 2;

/// Reads the command line; prints help, version or what is wrong with it.
std::variant<Options, ExitStatus> parseOptions(int argc, const char* const* argv);

} // namespace glimra::desktop
