#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace glimra::platform {

/// Bundle identifier of the game.
inline constexpr std::string_view kGameIdentifier = "com.blizzard.worldofwarcraft";

struct RunningApplication {
    /// Bundle identifier; absent when the application has none.
    std::optional<std::string> bundleIdentifier;

    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

/// The desktop around the application. Main thread only. Calls return at once: answers come from events
/// received earlier.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// The application in front; none when there is none.
    virtual std::optional<RunningApplication> frontmostApplication() const = 0;

    /// `changed` is called when `frontmostApplication` may have changed. Call once, at start-up.
    virtual void observeFront(std::function<void()> changed) = 0;

    /// Sets the handlers for when the machine is about to sleep and when its screens wake. Call once, at
    /// start-up.
    virtual void observeSleep(std::function<void()> aboutToSleep, std::function<void()> screensDidWake) = 0;

    /// Opens a web address in the user's browser; returns false when `address` is not a web address.
    virtual bool openUrl(const std::string& address) = 0;
};

} // namespace glimra::platform
