#pragma once

#include "keyboards/device/keyboard_device.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace glimra::keyboards {

/// What happened to a device. The same text is not reported again before the device is found.
struct DeviceEvent {
    enum class Kind { Found, Absent, Lost };

    Kind kind = Kind::Absent;
    std::string text;
    /// Of `Found` only: what lights up, in a few words.
    std::string name{};
};

/// Keeps a device showing a keyboard model, on a thread of its own. It sends only the keys whose colours have
/// changed, and every ten seconds all of them, since another program may have painted over them; otherwise
/// the thread sleeps. It sends at most 30 frames a second. Frames do not wait in a queue: each shows the
/// model as it is when the frame is sent. A device that is absent or lost is looked for as soon as it tells
/// that something has changed, otherwise after pauses that grow up to 30 s, and gets every key when it is
/// found.
///
/// All functions are for the main thread.
class DeviceWriter {
public:
    /// Called on the writer's thread, and never after `stop` or `leave` has returned.
    using Report = std::function<void(const DeviceEvent&)>;

    /// How long `stop` waits for the device.
    static constexpr Duration kStopLimit = std::chrono::milliseconds(500);

    /// Starts looking for the device. With `after`, the token that `leave` of an earlier writer returned, it
    /// first waits on its thread, for some seconds at most, until that writer has closed its device. Throws
    /// std::system_error when the system has no thread or no file descriptor to give.
    DeviceWriter(std::unique_ptr<KeyboardDevice> device, Report report,
                 std::shared_ptr<const WakeEvent> after = nullptr);
    /// Calls `stop`.
    ~DeviceWriter();

    /// Makes the device show this model from now on. The model's times are those of CLOCK_MONOTONIC. Before
    /// the first call nothing is sent. Never waits for the device.
    void show(const KeyboardModel& model);
    /// Takes the device over anew and sends every key: it forgets its lights while the computer sleeps.
    void resendAll();

    /// Closes the device and ends the thread. Waits for that no longer than `kStopLimit`; a device that takes
    /// longer is closed by the thread without us.
    void stop();
    /// Like `stop`, but does not wait at all. The token that it returns is set when the device is closed.
    std::shared_ptr<const WakeEvent> leave();

private:
    struct Shared;
    class Loop;

    void askToStop();

    std::shared_ptr<Shared> m_shared;
    std::thread m_thread;
};

} // namespace glimra::keyboards
