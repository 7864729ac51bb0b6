#pragma once

#include "keyboards/device/keyboard_device.h"

#include <memory>
#include <vector>

namespace glimra::keyboards {

/// The first of several devices that finds a keyboard. They are asked in their order at each search, so one
/// that finds nothing never keeps the others from being asked.
class FirstKeyboard final : public KeyboardDevice {
public:
    /// Throws std::system_error when the process has no file descriptor left.
    explicit FirstKeyboard(std::vector<std::unique_ptr<KeyboardDevice>> devices);
    ~FirstKeyboard() override;
    FirstKeyboard(const FirstKeyboard&) = delete;
    FirstKeyboard& operator=(const FirstKeyboard&) = delete;

    OpenResult look(const WakeEvent& stop) override;
    OpenResult open(const WakeEvent& stop) override;
    DeviceStatus write(std::span<const KeyColor> keys) override { return m_found->write(keys); }
    void claim() override { m_found->claim(); }
    void close() override;
    DevicePace pace() const override { return m_found->pace(); }
    int watchedFd() const override { return m_found != nullptr ? m_found->watchedFd() : m_news; }
    DeviceStatus serve() override;

private:
    using Search = OpenResult (KeyboardDevice::*)(const WakeEvent& stop);

    OpenResult ask(Search search, const WakeEvent& stop);
    void watchAll();

    std::vector<std::unique_ptr<KeyboardDevice>> m_devices;
    KeyboardDevice* m_found = nullptr;
    /// Can be read when one of the devices, none of which has found anything, has something to tell.
    int m_news = -1;
};

} // namespace glimra::keyboards
