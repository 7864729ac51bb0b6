#pragma once

#include "keyboards/device/wake_event.h"
#include "keyboards/model/keyboard_model.h"

#include <span>
#include <string>

namespace glimra::keyboards {

/// A key, by its position in `lighting::kKeyboardLayout`, and the colour that it shall have.
struct KeyColor {
    std::size_t key = 0;
    Rgb color{};

    friend bool operator==(const KeyColor&, const KeyColor&) = default;
};

/// Texts are sentences for the log, without a line end.
struct OpenResult {
    bool found = false;
    /// Found: which keyboard it is. Otherwise: why there is none, and what the player can do about it.
    std::string text;
    /// Found: what lights up, in a few words: "keyboard G810 on USB".
    std::string name{};
};

struct DeviceStatus {
    enum class Kind {
        Ok,
        /// It is still there but shows something else by now: every key has to be sent.
        AllKeysNeeded,
        Lost
    };

    Kind kind = Kind::Ok;
    /// When it is lost: a sentence for the log.
    std::string text;
};

struct DevicePace {
    /// From the beginning of one frame to that of the next, at least; 0 when only the frames' own rate
    /// counts.
    Duration interval{};
    /// A device that may lose the last frame of a series has it sent again after this time; 0 for the others.
    Duration repeatAfter{};
};

/// A real keyboard without effects of its own, as its writer sees it. Every function is called on the
/// writer's thread only, and may block there for a moment: nobody but the keyboard's own lights waits.
///
/// Order of calls: `open` again and again until it finds something; then `write` and `serve`; at the end, or
/// when the device was lost, one `close`; and from the beginning.
class KeyboardDevice {
public:
    virtual ~KeyboardDevice() = default;

    /// Looks for the keyboard and takes it. Nothing is left open when there is none. Must return within 0.3 s
    /// once `stop` is set; `stop` stays valid for the whole life of the device.
    virtual OpenResult open(const WakeEvent& stop) = 0;

    /// Shows these keys in one frame; the others keep what they show. The first frame after `open` and after
    /// `AllKeysNeeded` has every key, keys that the device has not included. Never empty.
    virtual DeviceStatus write(std::span<const KeyColor> keys) = 0;

    /// Hands the keyboard back, as it was found where the device can tell; at most 0.3 s, for a lost
    /// device at once.
    virtual void close() = 0;

    /// While it is open.
    virtual DevicePace pace() const = 0;

    /// What the device may have something to tell on, while it is open: `serve` is called when it can be
    /// read. -1 for a device that never speaks first.
    virtual int watchedFd() const = 0;
    virtual DeviceStatus serve() = 0;
};

} // namespace glimra::keyboards
