#pragma once

#include "keyboards/model/keyboard_model.h"

#include <functional>
#include <optional>

namespace glimra::tools {

/// Makes a sequence of frames of what a keyboard shows over time, from its first change on. A new frame
/// begins whenever the colours change, by a call or by a running effect.
class Film {
public:
    /// A frame shows from `begin` to `end`; `end` is the next one's `begin`.
    using Show =
        std::function<void(const keyboards::KeyColors& colors, platform::Time begin, platform::Time end)>;

    explicit Film(Show show) : m_show(std::move(show)) {}

    /// The keyboard is like this from `now` on. Of several changes at one moment the last counts.
    void change(const keyboards::KeyboardModel& keyboard, platform::Time now);
    /// The film is over; nothing may follow.
    void end(platform::Time now);

private:
    struct Frame {
        keyboards::KeyColors colors;
        platform::Time begin;
    };

    void advance(platform::Time now);
    void take(const keyboards::KeyColors& colors, platform::Time begin);

    Show m_show;
    std::optional<keyboards::KeyboardModel> m_keyboard;
    /// The time up to which frames were made.
    platform::Time m_seen{0};
    /// The frame that shows, its end not yet known.
    std::optional<Frame> m_frame;
};

} // namespace glimra::tools
