#pragma once

#include "keyboards/device/keyboard_device.h"
#include "keyboards/openrgb/hand_placing.h"
#include "keyboards/openrgb/keyboard_choice.h"

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
    /// What the player has told about the keys' LEDs.
    std::shared_ptr<HandPlacing> placing = std::make_shared<HandPlacing>();
};

/// A keyboard of any maker, through the SDK server of OpenRGB. The first frame puts the keyboard into the
/// mode in which each LED has a colour of its own; each frame has the colours of all LEDs, and LEDs that
/// belong to no key keep those that they had. `close` brings back the mode that was found at first and, where
/// that mode shows them, the colours.
///
/// While it has found nothing it stays connected, so that it hears when the server finds a keyboard, and so
/// that a server that hangs can still send its answer.
class OpenRgbDevice final : public KeyboardDevice {
public:
    explicit OpenRgbDevice(Options options);
    ~OpenRgbDevice() override;

    OpenResult look(const WakeEvent& stop) override;
    OpenResult open(const WakeEvent& stop) override;
    DeviceStatus write(std::span<const KeyColor> keys) override;
    void claim() override { m_isTaken = false; }
    void close() override;
    DevicePace pace() const override;
    int watchedFd() const override { return m_session ? m_session->fd() : -1; }
    DeviceStatus serve() override;

private:
    /// What the keyboard showed before it was taken.
    struct Found {
        std::string identity;
        /// Empty when the server did not tell.
        std::string modeName;
        std::vector<Rgb> colors;
    };

    OpenResult search(const WakeEvent& stop);
    std::optional<Keyboard> converse(const WakeEvent& stop);
    OpenResult whyNone() const;
    std::string foundText() const;
    void use(Keyboard keyboard);
    void takeOver();
    void fillFrame();
    void giveBack();
    DeviceStatus serveSearch();
    DeviceStatus checkMode();
    DeviceStatus renew();
    DeviceStatus lost(const std::string& why);
    std::string serverText() const;

    Options m_options;
    std::uint32_t m_newestVersion = kNewestVersion;
    std::unique_ptr<Session> m_session;
    /// Has a value while the device is open.
    std::optional<Keyboard> m_keyboard;
    LightColors m_lights{};
    ColorPacket m_frame;
    Time m_frameSentAt{};
    std::optional<Found> m_found;
    /// The keyboard has been put into our mode since it was opened, and its lights have to be given back.
    bool m_wasTaken = false;
    /// It is in our mode as far as is known.
    bool m_isTaken = false;
    Time m_takenAt{};
};

} // namespace glimra::keyboards::openrgb
