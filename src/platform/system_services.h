#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::platform {

/// Starts programs without waiting for them. Arguments are passed unchanged; no shell is involved.
class ChildProcesses {
public:
    virtual ~ChildProcesses() = default;
    virtual void start(const std::string& path, const std::vector<std::string>& arguments) = 0;
};

/// Plays the system's named sounds without waiting for them.
class Sounds {
public:
    virtual ~Sounds() = default;
    virtual void play(std::string_view name) = 0;
};

class RandomNumbers {
public:
    virtual ~RandomNumbers() = default;
    /// Uniformly random from 0 to `upperBound` - 1; `upperBound` is above 0.
    virtual std::uint32_t uniform(std::uint32_t upperBound) = 0;
};

/// The machine's own log, for messages that do not concern the player. Each call writes one line, given
/// without its line end. Any thread.
class SystemLog {
public:
    virtual ~SystemLog() = default;
    virtual void write(std::string_view line) = 0;
};

/// Keeps the machine from idle sleep between `begin` and `end`.
class ProcessActivity {
public:
    virtual ~ProcessActivity() = default;
    virtual void begin(std::string_view reason) = 0;
    virtual void end(std::string_view reason) = 0;
};

/// The current state of the user's modifier keys.
class Modifiers {
public:
    virtual ~Modifiers() = default;
    virtual bool optionKeyIsDown() const = 0;
};

} // namespace glimra::platform
