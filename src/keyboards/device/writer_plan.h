#pragma once

#include "keyboards/device/keyboard_device.h"

#include <array>
#include <optional>
#include <span>

namespace glimra::keyboards {

/// Decides what the writer of a device does next: when it looks for the device, which keys it sends and when,
/// and how long it sleeps. It has no clock, no thread and no device. It is given the times, each no earlier
/// than the one before.
class WriterPlan {
public:
    /// What a new model changes is sent at once, also between two frames of an effect; over any longer time
    /// there is no more than one frame in each `kFrame`. A device that needs more time for a frame gets it.
    /// A frame that was late by less than this does not put off those after it.
    static constexpr Duration kLateness = std::chrono::milliseconds(4);
    /// How long a new model waits for the next one: calls that belong together come within this time, and
    /// become one frame.
    static constexpr Duration kGather = std::chrono::milliseconds(2);
    /// The pause after the first search that found nothing. As long as nothing changes each later pause is
    /// twice as long as the one before, up to the longest or to what the device allows.
    static constexpr Duration kFirstPause = std::chrono::milliseconds(500);
    static constexpr Duration kLongestPause = std::chrono::seconds(30);
    /// How soon a device is looked for when something says that it may have come. What belongs to its coming
    /// happens within this time.
    static constexpr Duration kAfterNews = std::chrono::milliseconds(100);
    /// A device that was there for at least this long is looked for soon when it is lost; one that is lost
    /// sooner each time, after pauses that grow up to this.
    static constexpr Duration kStable = std::chrono::seconds(10);
    static constexpr Duration kLongestPauseAfterLoss = std::chrono::seconds(2);
    /// How often everything is sent again, since another program may have painted over it; more rarely where
    /// that would take more than this part of the time.
    static constexpr Duration kRefresh = std::chrono::seconds(10);
    static constexpr int kRefreshShare = 100;

    struct Step {
        enum class Kind { Search, Write, Wait };

        Kind kind = Kind::Wait;
        /// For `Write`: the keys to send, at least one. Valid until the next call.
        std::span<const KeyColor> keys{};
        /// For `Wait`: the time to wait for; none to wait until something happens.
        std::optional<Time> until{};
        /// For `Wait`: a frame is sent at the end of the wait anyway. A new model need not end it, since that
        /// frame shows it.
        bool frameIsDue = false;
    };

    /// What to do now. After a search, `found` or `notFound` must be called, and after a write, `written` or
    /// `lost`.
    Step next(Time now);

    void show(const KeyboardModel& model, Time now);
    void resendAll(Time now);

    void found(const DevicePace& pace, Time now);
    /// The next search is made within `retryWithin`.
    void notFound(Duration retryWithin, Time now);
    /// A device that was not found may have come.
    void lookAgain(Time now);
    void written(Time now);
    void lost(Time now);
    bool isOpen() const { return m_open; }

private:
    Step search(Time now) const;
    Step write(std::size_t count, Time now);
    void frameBegins(Time now);
    Time frameDue() const;
    Step wait(Time now) const;
    std::size_t collectChanges(Time now);
    void pauseSearch(Duration longest, Time now);

    std::optional<KeyboardModel> m_model;

    bool m_open = false;
    Time m_searchAt{};
    Duration m_pause = kFirstPause;
    Time m_foundAt{};
    DevicePace m_pace;

    LightColors m_sent{};
    bool m_allKeysNeeded = false;
    /// The keys of the last frame, which may have to be sent again.
    std::array<KeyColor, kLightCount> m_frame{};
    std::size_t m_frameSize = 0;
    Time m_frameBegan{};
    /// The time before which the device takes no frame.
    Time m_deviceReadyAt{};
    /// When the next frame of an effect may begin. One of a new model may begin `kFrame` earlier, once: it
    /// puts this off by as much.
    Time m_effectsFrom{};
    /// When what an effect changes is compared with what was sent; none while nothing moves.
    std::optional<Time> m_effectsAt;
    /// When a new model, or all of it, is compared; none while there is none.
    std::optional<Time> m_modelAt;
    /// When everything is sent again.
    Time m_refreshAt = Time::max();
    /// When the last frame is sent again, for a device that may have lost it.
    std::optional<Time> m_repeatAt;
};

} // namespace glimra::keyboards
