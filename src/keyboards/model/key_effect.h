#pragma once

#include "lighting/color_conversion.h"
#include "platform/run_loop.h"

#include <cstdint>

namespace glimra::keyboards {

using lighting::Rgb;
using platform::Duration;
using platform::Time;

/// The least time for which a keyboard shows one colour: 30 pictures a second, which all of them can follow.
inline constexpr Duration kFrame = std::chrono::nanoseconds(33'333'333);

/// What covers the base colour of one key for some time.
struct KeyEffect {
    enum class Kind : std::uint8_t { None, Flash, Pulse };

    Kind kind = Kind::None;
    /// The colour of a flash; the first colour of a pulse.
    Rgb start{};
    /// The second colour of a pulse. A flash has none.
    Rgb finish{};
    /// A pulse moves from `start` to `finish` and back in this time. A flash is lit for this time, then dark
    /// for as long; with 0 it is always lit.
    Duration period{};
    Time begin{};
    /// `Time::max()` for an effect that runs until it is stopped.
    Time end{};
};

bool runsAt(const KeyEffect& effect, Time time);

/// The colour of a key whose effect runs. A moment before the beginning shows the beginning.
Rgb colorAt(const KeyEffect& effect, Time time, Rgb base);

// A keyboard cannot follow every colour in between. It shows an effect in steps of `kFrame` or a little
// longer, so that the brightest and the darkest moment of each pulse are a step of their own, and a flash
// changes at its edges. An effect too fast for that is shown more slowly: each step still brings its other
// colour.

/// When the step began that is shown at this time.
Time stepAt(const KeyEffect& effect, Time time);

/// The next moment later than `after` at which an effect that runs then goes on to its next step, or ends;
/// `Time::max()` when it never changes again.
Time nextStep(const KeyEffect& effect, Time after);

} // namespace glimra::keyboards
