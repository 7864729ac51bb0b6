#pragma once

#include "lighting/color_conversion.h"
#include "platform/led_driver.h"
#include "platform/run_loop.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>

namespace glimra::events {

// An animation is a list of steps that are carried out one after the other. Frames are painted on the working
// bitmap, which is a copy of the profile's bitmap when the animation begins.

using lighting::Color;
using lighting::Rgb;
using platform::Duration;

/// Upright bands, `count` of them across the keyboard; bit i of `chosen` is band i, from the left.
struct Bands {
    int count;
    std::uint32_t chosen;
    Rgb color;
};

/// All cells of a row. Rows are numbered 0 to 5 from the top; any other number paints nothing.
struct Row {
    int row;
    Rgb color;
};

/// Every other cell of a row, without the rightmost column: the even columns of an even row, the odd columns
/// of an odd one.
struct AlternateCells {
    int row;
    Rgb color;
};

/// A row gets the profile's colours back.
struct ProfileRow {
    int row;
};

/// Something painted on the working bitmap; nothing if it is left empty.
using Paint = std::variant<std::monostate, Bands, Row, AlternateCells, ProfileRow>;

/// What a frame is painted on.
enum class Ground {
    /// The working bitmap as the frame before left it; before the first frame, the profile.
    Kept,
    Profile,
    White,
};

/// Paints on the working bitmap, one paint after the other, and shows it.
struct Frame {
    Ground ground = Ground::Profile;
    std::array<Paint, 6> paints{};
};

/// Chooses the devices that are lit from now on.
struct TargetDevices {
    int devices = 0;
};

/// Lights every key in one colour.
struct AllKeys {
    Color color;
};

struct OneKey {
    platform::KeyName key;
    Color color;
};

struct Step {
    std::variant<TargetDevices, AllKeys, OneKey, Frame> action;
    /// Time until the next step; 0 does not wait at all.
    Duration wait{0};
};

/// What these state values become when an animation has been played to its end; an empty one stays as it is.
struct Outcome {
    std::optional<bool> deadAnimationPlaying{};
    std::optional<int> WoWisInTheForeground{};
};

/// What one message does that plays an animation.
struct Animation {
    /// The message.
    char code;
    std::span<const Step> overProfile;
    /// Played instead in single-colour mode, if there are any.
    std::span<const Step> singleColor{};
    Outcome outcome{};
};

/// Every animation there is; a code occurs once.
std::span<const Animation> animations();

/// The animation of a message; null if it has none.
const Animation* findAnimation(char code);

} // namespace glimra::events
