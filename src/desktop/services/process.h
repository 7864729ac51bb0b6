#pragma once

#include <chrono>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// A program to run without a shell: every argument is passed unchanged.
struct Command {
    /// A path, or a name that is searched in PATH.
    std::string program;
    std::vector<std::string> arguments;
    /// The working folder of the program; empty for our own.
    std::string workingDirectory;
};

/// The path of a program given by path or by its name in PATH; none when there is no such executable.
std::optional<std::string> findProgram(std::string_view program);

/// Starts a program that is independent of us: it has its own session, none of our descriptors and signal
/// settings, and its input and output are /dev/null. Returns false when there is no such program.
///
/// This and `runToEnd` need some milliseconds to start a process; not for the main thread.
bool startDetached(const Command& command);

/// Runs a program to its end and returns its exit code. It is killed, together with its children, when it
/// takes longer than `limit` or a stop is requested. None when it was killed, ended by a signal, or could not
/// be run.
std::optional<int> runToEnd(const Command& command, std::chrono::milliseconds limit,
                            const std::stop_token& stop);

} // namespace glimra::desktop
