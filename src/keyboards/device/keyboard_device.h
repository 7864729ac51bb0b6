#pragma once

#include "keyboards/device/wake_event.h"
#include "keyboards/model/keyboard_model.h"

#include <span>
#include <string>

namespace glimra::keyboards {

/// A key, as its position in `lighting::kKeyboardLayout`, or `kWholeBoard`, and the colour that it is to
/// show.
struct KeyColor {
    std::size_t key = 0;
    Rgb color{};

    friend bool operator==(const KeyColor&, const KeyColor&) = default;
};

/// What came of looking for a device. Texts are sentences for the log, without a line end.
struct OpenResult {
    bool found = false;
    /// When found: which keyboard it is. Otherwise: why there is none, and what the player can do about it.
    std::string text;
    /// When found: what lights up, in a few words: "keyboard G810 on USB".
    std::string name{};
    /// When there is none: what the player can type or click to change that, as sentences.
    std::string remedy{};
    /// When there is none: how long the next search may be put off. Short where a search costs next to
    /// nothing.
    Duration retryWithin = std::chrono::seconds(30);
};

/// How a device is after it was used.
struct DeviceStatus {
    enum class Kind {
        Ok,
        /// The device works but no longer shows what it was sent: every key has to be sent again.
        AllKeysNeeded,
        Lost,
        /// Of a device that was not found: it is worth looking again.
        LookAgain
    };

    Kind kind = Kind::Ok;
    /// When it is lost: how, as a sentence for the log.
    std::string text;
};

/// How fast a device can be written to.
struct DevicePace {
    /// The least time from the beginning of one frame to the beginning of the next; 0 for a device that takes
    /// frames as fast as they are made.
    Duration interval{};
    /// For a device that may lose the last frame of a series: that frame is sent again after this time. 0 for
    /// all other devices.
    Duration repeatAfter{};
};

/// A real keyboard without effects of its own: all it can do is show colours. Its writer calls every function
/// on the writer's thread, where a function may block for a moment: only this keyboard's lights wait for it.
///
/// The order of calls: `open` until it finds something, then `write`, `claim` and `serve` any number of
/// times, then one `close`, at the end or when the device was lost. After `close` it may begin again with
/// `open`.
class KeyboardDevice {
public:
    virtual ~KeyboardDevice() = default;

    /// Says what `open` would find, and changes nothing at the keyboard. Only instead of `open`, never after
    /// it. Must return within 0.3 s after `stop` is set, which exists as long as the device does.
    virtual OpenResult look(const WakeEvent& stop) = 0;

    /// Looks for the keyboard, and takes it into use when there is one. What it shows stays until the first
    /// `write`. Must return within 0.3 s after `stop` is set, which exists as long as the device does.
    virtual OpenResult open(const WakeEvent& stop) = 0;

    /// Shows these keys in their colours, all at once; the other keys stay as they are. `keys` is never
    /// empty. In the first frame after `open` and after `AllKeysNeeded` it has all `kLightCount` lights, also
    /// those that this device lacks.
    virtual DeviceStatus write(std::span<const KeyColor> keys) = 0;

    /// Another program, or the keyboard's sleep, may have put the keyboard into another mode: the next
    /// `write`, which has all lights, takes it over anew.
    virtual void claim() = 0;

    /// Hands the keyboard back, with the lights that `open` found where the device can tell what they were.
    /// Returns within 0.4 s, and at once for a device that was lost. A device that has found nothing ends its
    /// search.
    virtual void close() = 0;

    /// Called only while the device is open.
    virtual DevicePace pace() const = 0;

    /// The file descriptor by which the device tells that something happened to it, or that a keyboard may
    /// have come: when it can be read, `serve` is called. -1 for a device without such. It may be another
    /// one after each call of another function.
    virtual int watchedFd() const = 0;
    virtual DeviceStatus serve() = 0;
};

} // namespace glimra::keyboards
