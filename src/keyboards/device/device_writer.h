#pragma once

#include "keyboards/device/keyboard_device.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace glimra::keyboards {

/// What becomes of a device. Each text is told once until the device is found.
struct DeviceEvent {
    enum class Kind { Found, Absent, Lost };

    Kind kind = Kind::Absent;
    std::string text;
    /// Found: what lights up, in a few words.
    std::string name{};
};

/// Keeps a device showing a keyboard model, on a thread of its own. Sends only keys whose colours have
/// changed, and nothing at all while none changes: the thread sleeps then. At most 30 frames a second, and
/// the newest one always: none waits in a queue. A device that is lost or not there is looked for again after
/// 1, 2, 4 ... 30 s, and gets every key when it is there.
///
/// Main thread, but for what is said of `Report`.
class DeviceWriter {
public:
    /// Told on the writer's thread, never after `stop` or `leave` has returned.
    using Report = std::function<void(const DeviceEvent&)>;

    /// How long `stop` waits for the device.
    static constexpr Duration kStopLimit = std::chrono::milliseconds(500);

    /// Starts looking for the device, once the writer that the token `after` is of has let go of its own.
    /// Throws std::system_error when the machine gives no thread or no file descriptor.
    DeviceWriter(std::unique_ptr<KeyboardDevice> device, Report report,
                 std::shared_ptr<const WakeEvent> after = nullptr);
    /// Stops.
    ~DeviceWriter();

    /// Shows what `model` shows from now on, by CLOCK_MONOTONIC. Before the first call nothing is sent. Never
    /// waits for the device.
    void show(const KeyboardModel& model);
    /// Sends every key again, changed or not: after the machine slept, a device has forgotten its lights.
    void resendAll();

    /// Hands the keyboard back and ends the thread. After `kStopLimit` it is left to end by itself.
    void stop();
    /// The same without waiting at all. The token is set when the device is closed.
    std::shared_ptr<const WakeEvent> leave();

private:
    struct Shared;
    class Loop;

    void askToStop();

    std::shared_ptr<Shared> m_shared;
    std::thread m_thread;
};

} // namespace glimra::keyboards
