#pragma once

#include "keyboards/device/keyboard_device.h"

#include <array>
#include <optional>
#include <span>

namespace glimra::keyboards {

/// Decides what the writer of a device does next: when it looks for the device, which keys it sends and when,
/// and how long it sleeps. It has no clock, no thread and no device; times are given, and never go back.
class WriterPlan {
public:
    /// Frames a second, at most.
    static constexpr Duration kFrameInterval = std::chrono::nanoseconds(33'333'334);
    /// Calls that belong together come one right after the other: what they show becomes one frame.
    static constexpr Duration kGather = std::chrono::milliseconds(2);
    static constexpr Duration kFirstPause = std::chrono::seconds(1);
    static constexpr Duration kLongestPause = std::chrono::seconds(30);
    /// A device that was lost sooner than this is looked for no more often than before it was found.
    static constexpr Duration kStable = std::chrono::seconds(10);

    struct Step {
        enum class Kind { Search, Write, Wait };

        Kind kind = Kind::Wait;
        /// Write: these; at least one. Valid until the next call.
        std::span<const KeyColor> keys{};
        /// Wait: until then, or without it until something happens.
        std::optional<Time> until{};
        /// Wait: a new model would not end it; the frame that comes then shows it.
        bool frameIsDue = false;
    };

    /// A search is answered by `found` or `notFound`. A write counts as done unless `lost` follows.
    Step next(Time now);

    void show(const KeyboardModel& model, Time now);
    void resendAll(Time now);

    void found(const DevicePace& pace, Time now);
    void notFound(Time now);
    void lost(Time now);
    bool isOpen() const { return m_open; }

private:
    Step search(Time now) const;
    Step write(std::size_t count, Time now);
    Step wait(Time now) const;
    std::size_t collectChanges(Time now);
    void pauseSearch(Time now);

    std::optional<KeyboardModel> m_model;

    bool m_open = false;
    Time m_searchAt{};
    Duration m_pause = kFirstPause;
    Time m_foundAt{};
    DevicePace m_pace;

    KeyColors m_sent{};
    bool m_allKeysNeeded = false;
    /// The keys of the last frame, which may have to be sent again.
    std::array<KeyColor, kKeyCount> m_frame{};
    std::size_t m_frameSize = 0;
    /// The next frame must not begin before.
    Time m_earliest{};
    /// When colours have to be compared with those sent; none while they stand still.
    std::optional<Time> m_compareAt;
    std::optional<Time> m_repeatAt;
};

} // namespace glimra::keyboards
