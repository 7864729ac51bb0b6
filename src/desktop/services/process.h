#pragma once

#include <chrono>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop {

/// A program to be run, without a shell: every argument reaches it byte for byte.
struct Command {
    /// A path, or a name that is looked for in PATH.
    std::string program;
    std::vector<std::string> arguments;
    /// Where it runs; empty for where we run.
    std::string workingDirectory;
};

/// The path of a program given by its path or by its name in PATH; none when no such program can be run.
std::optional<std::string> findProgram(std::string_view program);

/// Starts a program that lives on by itself, with no ties to us: its own session, no descriptor and no signal
/// setting of ours, nothing to read and nowhere to write to. False when there is no such program.
///
/// This and `runToEnd` take some milliseconds to start a process; not for the main thread.
bool startDetached(const Command& command);

/// Runs a program to its end and returns its exit code. It is killed, with what it has started, when it takes
/// longer than `limit` or a stop is asked for; then, and when it cannot be run or a signal ends it, the
/// result is none.
std::optional<int> runToEnd(const Command& command, std::chrono::milliseconds limit,
                            const std::stop_token& stop);

} // namespace glimra::desktop
