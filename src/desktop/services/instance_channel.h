#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QString>

namespace glimra::desktop {

/// What one start of the program asks of the one that is running.
struct InstanceCommand {
    enum class Kind { BringToFront, Quit, TestPattern, Profile };

    Kind kind = Kind::BringToFront;
    /// 1 to 9, with `Profile`.
    int profile = 0;

    friend bool operator==(const InstanceCommand&, const InstanceCommand&) = default;
};

/// As it is sent: "raise", "quit", "test-pattern", "profile 3".
std::string toText(const InstanceCommand& command);
/// None for whatever else.
std::optional<InstanceCommand> commandFromText(std::string_view text);

/// A way from one start of the program to the one that is running. Each waits two seconds at most. Main
/// thread, with an application object.
class InstanceChannel {
public:
    /// Tells whether the command will be carried out, which is not done before the caller has its answer.
    using Handler = std::function<bool(const InstanceCommand&)>;

    virtual ~InstanceChannel() = default;

    enum class Standing {
        /// This way cannot be gone here.
        Unusable,
        First,
        Second
    };
    /// Becomes the running one, unless there is one. It is told commands from the event loop, as long as the
    /// channel lives.
    virtual Standing claim(Handler handler) = 0;

    enum class Delivery {
        Unusable,
        /// Or only one that will not do it.
        NobodyThere,
        Delivered
    };
    virtual Delivery send(const InstanceCommand& command) = 0;
};

/// The ways that there are, the better one first: the session bus; a socket in the run-time directory.
/// `identity` tells those apart that may run beside each other: letters and digits, empty for the usual one.
std::vector<std::unique_ptr<InstanceChannel>> instanceChannels(const QString& identity);

std::unique_ptr<InstanceChannel> makeBusChannel(const QString& busAddress, const QString& identity);
/// The socket and its lock are open to their owner only.
std::unique_ptr<InstanceChannel> makeSocketChannel(const QString& folder, const QString& identity);

} // namespace glimra::desktop
