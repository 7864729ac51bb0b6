#pragma once

#include "keyboards/device/keyboard_device.h"
#include "keyboards/openrgb/key_names.h"
#include "keyboards/openrgb/session.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace glimra::keyboards::openrgb {

struct Options {
    ServerAddress server;
    /// The name of the keyboard to light, or a part of it. When empty, the keyboard with the most keys is
    /// lit.
    std::string keyboardName;
    Timing timing;
};

/// A keyboard of any maker, through the SDK server of OpenRGB. Puts the keyboard into the mode in which each
/// LED has a colour of its own, and sends the colours of all LEDs with each frame; LEDs that belong to no key
/// keep the colours that they had. `close` brings back the mode and the colours that were found at first.
class OpenRgbDevice final : public KeyboardDevice {
public:
    explicit OpenRgbDevice(Options options);
    ~OpenRgbDevice() override;

    OpenResult open(const WakeEvent& stop) override;
    DeviceStatus write(std::span<const KeyColor> keys) override;
    void close() override;
    DevicePace pace() const override;
    int watchedFd() const override;
    DeviceStatus serve() override;

private:
    /// A device of the server that can be lit.
    struct Keyboard {
        std::uint32_t device = 0;
        Controller controller;
        std::vector<LedOfKey> leds;
        std::size_t keyCount = 0;
        std::size_t perLedMode = 0;
    };
    /// What the keyboard showed before it was taken.
    struct Found {
        std::string identity;
        std::string modeName;
        std::vector<Rgb> colors;
    };

    OpenResult tryToOpen(const WakeEvent& stop);
    template <class Rank>
    std::optional<Keyboard> choose(Rank rank);
    template <class Rank>
    std::optional<Keyboard> chooseFromList(Rank rank);
    std::optional<Keyboard> readKeyboard(std::uint32_t device);
    int rankForPlayer(const Controller& controller) const;
    void takeOver(Keyboard keyboard);
    void giveBack();
    DeviceStatus renew();
    DeviceStatus lost(const std::string& why);
    std::string serverText() const;

    Options m_options;
    std::uint32_t m_newestVersion = kNewestVersion;
    std::unique_ptr<Session> m_session;
    Keyboard m_keyboard;
    KeyColors m_colors{};
    ColorPacket m_frame;
    std::optional<Found> m_found;
    /// The keyboard has been taken over, and its lights have to be given back.
    bool m_isLit = false;
};

} // namespace glimra::keyboards::openrgb
