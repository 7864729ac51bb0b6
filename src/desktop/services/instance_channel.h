#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QString>

namespace glimra::desktop {

/// A command from another start of the program to the running instance.
struct InstanceCommand {
    enum class Kind {
        BringToFront,
        Quit,
        Status,
        Reload,
        TestPattern,
        Reset,
        Calibrate,
        Debug,
        FastResponse,
        EndStaleEffects,
        Profile
    };

    Kind kind = Kind::BringToFront;
    /// Of a profile, 1 to 9. Otherwise 0 or 1: whether a status is wanted as JSON, what is to be on or off.
    int number = 0;

    friend bool operator==(const InstanceCommand&, const InstanceCommand&) = default;
};

/// What the running instance says to it.
struct InstanceAnswer {
    /// Whether the command is carried out.
    bool isAccepted = false;
    /// What was asked for, or why the command is refused; often empty.
    std::string text{};

    friend bool operator==(const InstanceAnswer&, const InstanceAnswer&) = default;
};

/// The form in which a command is sent: "raise", "quit", "profile 3", "fast-response 0".
std::string toText(const InstanceCommand& command);
/// None for any other text.
std::optional<InstanceCommand> commandFromText(std::string_view text);

/// A channel from another start of the program to the running instance. Each call waits at most two seconds.
/// Main thread; needs an application object.
class InstanceChannel {
public:
    /// What may take long, or ends the instance, must happen later, after the caller has its answer.
    using Handler = std::function<InstanceAnswer(const InstanceCommand&)>;

    virtual ~InstanceChannel() = default;

    enum class Standing {
        /// This channel does not work here.
        Unusable,
        First,
        Second
    };
    /// Makes this the running instance, unless there is one. Commands are passed to `handler` from the event
    /// loop as long as the channel exists.
    virtual Standing claim(Handler handler) = 0;

    /// What the running instance holds by this channel, for a sentence.
    virtual std::string claimed() const = 0;

    /// None when nobody is there to answer.
    virtual std::optional<InstanceAnswer> send(const InstanceCommand& command) = 0;
};

/// All channels, the preferred one first: the session bus, then a socket in the run-time directory.
/// `identity` distinguishes instances that may run at the same time: letters and digits, empty for the
/// default one.
std::vector<std::unique_ptr<InstanceChannel>> instanceChannels(const QString& identity);

std::unique_ptr<InstanceChannel> makeBusChannel(const QString& busAddress, const QString& identity);
/// Only the owner can access the socket and its lock file.
std::unique_ptr<InstanceChannel> makeSocketChannel(const QString& folder, const QString& identity);

} // namespace glimra::desktop
