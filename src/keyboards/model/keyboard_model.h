#pragma once

#include "lighting/color_conversion.h"
#include "lighting/keyboard_layout.h"
#include "lighting/lighting_output.h"
#include "platform/led_driver.h"
#include "platform/run_loop.h"

#include <array>
#include <chrono>
#include <optional>

namespace glimra::keyboards {

using lighting::Percentages;
using lighting::Rgb;
using platform::Duration;
using platform::KeyName;
using platform::Time;

inline constexpr std::size_t kKeyCount = lighting::kKeyboardLayout.size();

/// A colour for every key, in the order of `lighting::kKeyboardLayout`.
using KeyColors = std::array<Rgb, kKeyCount>;

/// How long a frame of a moving colour stays.
inline constexpr Duration kFrame = std::chrono::milliseconds(33);

/// Position in `lighting::kKeyboardLayout` of the key that the LED functions call `keyName`; none when no key
/// has that name. Takes constant time.
std::optional<std::size_t> keyIndex(KeyName keyName);

enum class Repeat { Once, UntilStopped };

/// A colour of one key as a function of time.
struct KeyEffect {
    enum class Kind : std::uint8_t { None, Flash, Pulse };

    Kind kind = Kind::None;
    Rgb start{};
    /// Of a pulse only.
    Rgb finish{};
    /// There and back of a pulse, half of that of a flash; 0 is a flash without dark halves.
    Duration period{};
    Time begin{};
    /// `Time::max()` when only stopping ends it.
    Time end{};
};

/// What a keyboard with a light behind each key shows: a base colour per key, and at most one effect per key,
/// which is a function of time. A plain value: it has no clock, all times are given, and a copy lives on its
/// own. It allocates nothing. Not locked; threads that share one lock it themselves.
///
/// Base colours and effects are independent: a base colour set under a running effect shows when the effect
/// is over. A new effect on a key takes the place of the old one; an effect of no length (duration below 0,
/// for a pulse also 0) is over at once. Percentages are limited to 0 to 100. Functions of one key return
/// false when there is no such key, and nothing has changed then.
class KeyboardModel {
public:
    /// At first the keyboard is dark.
    KeyboardModel() = default;

    /// Bits of the device types that the calls from now on mean. While the bit of per-key devices is not
    /// among them, every other call does nothing. At first all are meant.
    void setTargetDevice(int targetDevice);

    /// Gives all keys one base colour.
    void setLighting(const Percentages& color);
    /// Sets the base colours of the keys in the bitmap; the others keep theirs.
    void setBitmap(platform::LedBitmapView bitmap);
    bool setKey(KeyName keyName, const Percentages& color);

    /// Shows `color` and the base colour in turn, each for `interval`, starting with `color`; only `color`
    /// when `interval` is not above 0. Ends after `duration`, or with duration 0 when it is stopped.
    bool flash(KeyName keyName, const Percentages& color, Duration duration, Duration interval, Time now);
    /// Moves evenly from `start` to `finish` and back, once in `duration`.
    bool pulse(KeyName keyName, const Percentages& start, const Percentages& finish, Duration duration,
               Repeat repeat, Time now);
    bool stopEffectsOnKey(KeyName keyName);
    void stopEffects();

    /// Shows the same on another keyboard, but for effects that end by themselves. Effects begin anew there.
    void repeatOn(platform::LedDriver& driver) const;

    /// The colours at a moment. A moment before an effect began shows the effect's beginning.
    KeyColors colorsAt(Time time) const;
    /// The next moment later than `after` at which colours can differ from those before: at most `kFrame`
    /// later while a pulse moves; none when they stay as they are.
    std::optional<Time> nextChange(Time after) const;

private:
    bool isMeant() const;
    bool put(KeyName keyName, const KeyEffect& effect);

    int m_targetDevice = lighting::kAllDevices;
    KeyColors m_base{};
    std::array<KeyEffect, kKeyCount> m_effects{};
};

} // namespace glimra::keyboards
