#include "keyboards/openrgb/openrgb_device.h"

#include "platform/monotonic_clock.h"

#include <algorithm>
#include <utility>

namespace glimra::keyboards::openrgb {

namespace {

/// A server may hold the last frame of a series back until another one comes, so it is sent twice, this far
/// apart.
constexpr Duration kRepeatAfter = std::chrono::milliseconds(100);

/// Servers write colours to the keyboard some time after they have got them. A mode that is set before would
/// be ended by that.
constexpr Duration kUntilWritten = std::chrono::milliseconds(50);

/// Two programs that both want another mode must not make the keyboard switch faster than this.
constexpr Duration kBetweenClaims = std::chrono::seconds(1);

/// A server that is not there costs next to nothing to look for, and nothing tells when it comes.
constexpr Duration kUntilServerComes = std::chrono::seconds(2);

constexpr Rgb kWhite{255, 255, 255};

const Mode* activeMode(const Controller& controller) {
    const auto index = static_cast<std::size_t>(controller.activeMode);
    return controller.activeMode >= 0 && index < controller.modes.size() ? &controller.modes[index] : nullptr;
}

bool showsLedColors(const Mode& mode) {
    return (mode.flags & Mode::kPerLedFlag) != 0 && mode.colorMode == Mode::kPerLedColors;
}

ColorPacket colorPacket(std::uint32_t device, const std::vector<Rgb>& colors) {
    ColorPacket frame(device, colors.size());
    for (std::size_t led = 0; led < colors.size(); ++led)
        frame.set(led, colors[led]);
    return frame;
}

} // namespace

OpenRgbDevice::OpenRgbDevice(Options options) : m_options(std::move(options)) {
}

OpenRgbDevice::~OpenRgbDevice() = default;

OpenResult OpenRgbDevice::look(const WakeEvent& stop) {
    OpenResult result = search(stop);
    if (m_keyboard)
        result.text += " It would be put into its mode \"" +
                       printable(m_keyboard->controller.modes[m_keyboard->perLedMode].name) + "\".";
    m_keyboard.reset();
    m_session.reset();
    return result;
}

OpenResult OpenRgbDevice::open(const WakeEvent& stop) {
    OpenResult result = search(stop);
    if (m_keyboard)
        m_options.placing->setBoard(HandPlacing::Board{HandPlacing::idOf(m_keyboard->controller),
                                                       printable(m_keyboard->controller.name),
                                                       m_keyboard->controller.leds, m_keyboard->leds});
    return result;
}

OpenResult OpenRgbDevice::search(const WakeEvent& stop) {
    if (m_session && m_session->awaitsAnswer())
        m_session->drain();
    if (m_session && m_session->awaitsAnswer())
        return whyNone();
    std::optional<Keyboard> keyboard = converse(stop);
    // No release of the server has the newest version yet, so its form may still have changed.
    if (m_session->wasMisunderstood() && m_session->version() == kNewestVersion) {
        m_newestVersion = kNewestVersion - 1;
        m_session.reset();
        keyboard = converse(stop);
    }
    if (!keyboard || m_session->isOver()) {
        OpenResult none = whyNone();
        if (m_session->isOver() && !m_session->awaitsAnswer())
            m_session.reset();
        return none;
    }
    use(std::move(*keyboard));
    return {.found = true,
            .text = foundText(),
            .name = "keyboard " + printable(m_keyboard->controller.name) + " through OpenRGB"};
}

std::optional<Keyboard> OpenRgbDevice::converse(const WakeEvent& stop) {
    if (!m_session || m_session->isOver()) {
        m_session.reset();
        m_session = std::make_unique<Session>(stop, m_options.timing);
        if (!m_session->start(m_options.server, m_newestVersion))
            return std::nullopt;
    }
    return chooseKeyboard(*m_session, rankByName(m_options.keyboardName));
}

OpenResult OpenRgbDevice::whyNone() const {
    OpenResult none{.text = serverText() + " "};
    if (!m_session->hasConnected()) {
        none.text += m_session->problem() + ".";
        none.remedy =
            "Start OpenRGB and, on its page \"SDK Server\", press \"Start Server\"; or type: openrgb "
            "--server. Where it listens elsewhere, say so with --openrgb HOST:PORT.";
        none.retryWithin = kUntilServerComes;
    } else if (m_session->isOver()) {
        none.text += m_session->problem() + ".";
        none.remedy = "End OpenRGB and start it again.";
    } else if (m_options.keyboardName.empty()) {
        none.text += "has no keyboard with a light behind each key.";
        none.remedy = "See that OpenRGB's own window lists the keyboard; press \"Rescan Devices\" there.";
    } else {
        none.text += "has no keyboard named \"" + printable(m_options.keyboardName) +
                     "\" with a light behind each key.";
        none.remedy = "Give --openrgb-keyboard a part of a name in the list of OpenRGB's own window.";
    }
    return none;
}

std::string OpenRgbDevice::foundText() const {
    const Keyboard& keyboard = *m_keyboard;
    std::string text =
        "Keyboard \"" + printable(keyboard.controller.name) + "\" found through OpenRGB, with ";
    if (keyboard.keyCount == 0)
        return text + "one color for all its lights.";
    text += std::to_string(keyboard.keyCount) + " keys.";
    if (const std::size_t rest = keyboard.controller.litLeds() - keyboard.leds.size(); rest > 0)
        text += " " + std::to_string(rest) +
                " of its lights are behind no key that Glimra knows, and stay as they are.";
    return text;
}

void OpenRgbDevice::use(Keyboard keyboard) {
    m_keyboard = std::move(keyboard);
    m_isTaken = false;
    const Controller& controller = m_keyboard->controller;
    const std::string identity = identityOf(controller);
    // A keyboard that is found again after an interruption may still show our own lights; what it showed
    // before them must not be forgotten.
    if (!m_found || m_found->identity != identity) {
        const Mode* const active = activeMode(controller);
        m_found = {identity, active ? active->name : std::string(), controller.colors};
    }
}

void OpenRgbDevice::takeOver() {
    // The first packet makes the server choose the mode, the second makes it tell the keyboard so.
    m_session->send(packet(PacketId::SetCustomMode, m_keyboard->device));
    m_session->send(updateModePacket(m_keyboard->device, m_keyboard->perLedMode,
                                     m_keyboard->controller.modes[m_keyboard->perLedMode].block));
    m_isTaken = true;
    m_wasTaken = true;
    m_takenAt = platform::monotonicNow();
}

DeviceStatus OpenRgbDevice::write(std::span<const KeyColor> keys) {
    DeviceStatus status = serve();
    if (status.kind != DeviceStatus::Kind::Ok)
        return status;
    for (const KeyColor& key : keys)
        m_lights[key.key] = key.color;
    if (!m_isTaken)
        takeOver();
    if (keys.size() == kLightCount)
        m_keyboard->leds =
            m_options.placing->corrected(ledsOfKeys(m_keyboard->controller), m_keyboard->controller);
    fillFrame();
    m_frameSentAt = platform::monotonicNow();
    return m_session->send(m_frame.bytes()) ? DeviceStatus() : lost(m_session->problem());
}

void OpenRgbDevice::fillFrame() {
    const std::vector<Rgb>& colors = m_keyboard->controller.colors;
    if (const std::optional<std::size_t> only = m_options.placing->onlyLed()) {
        m_frame = ColorPacket(m_keyboard->device, colors.size());
        if (*only < colors.size())
            m_frame.set(*only, kWhite);
        return;
    }
    m_frame = colorPacket(m_keyboard->device, colors);
    for (const LedOfKey& led : m_keyboard->leds)
        m_frame.set(led.led, m_lights[led.key]);
}

DeviceStatus OpenRgbDevice::serve() {
    if (!m_keyboard)
        return serveSearch();
    if (!m_session->drain())
        return lost(m_session->problem());
    if (m_session->wasRefused())
        return lost("does not let the keyboard be lit");
    if (m_session->listHasChanged())
        return renew();
    return m_isTaken && platform::monotonicNow() - m_takenAt >= kBetweenClaims ? checkMode() : DeviceStatus();
}

/// Hears a server that has no keyboard, or owes an answer.
DeviceStatus OpenRgbDevice::serveSearch() {
    if (!m_session)
        return {};
    m_session->drain();
    const bool hasEnded = m_session->isOver() && !m_session->awaitsAnswer();
    if (hasEnded)
        m_session.reset();
    return {hasEnded || m_session->listHasChanged() ? DeviceStatus::Kind::LookAgain : DeviceStatus::Kind::Ok,
            {}};
}

/// Takes the keyboard back when somebody has put it into another mode.
DeviceStatus OpenRgbDevice::checkMode() {
    if (!m_session->tookNoticeOf(m_keyboard->device))
        return {};
    const std::optional<Controller> now = m_session->controller(m_keyboard->device);
    if (m_session->isOver())
        return lost(m_session->problem());
    const Mode* const active = now ? activeMode(*now) : nullptr;
    if (active == nullptr || active->name == m_keyboard->controller.modes[m_keyboard->perLedMode].name)
        return {};
    claim();
    return {DeviceStatus::Kind::AllKeysNeeded, {}};
}

/// Finds the keyboard again after the server's list of devices has changed.
DeviceStatus OpenRgbDevice::renew() {
    std::optional<Keyboard> keyboard = chooseKeyboard(*m_session, rankSame(m_keyboard->controller));
    if (m_session->isOver())
        return lost(m_session->problem());
    if (!keyboard)
        return lost("has no keyboard \"" + printable(m_keyboard->controller.name) + "\" any more");
    use(std::move(*keyboard));
    return {DeviceStatus::Kind::AllKeysNeeded, {}};
}

DeviceStatus OpenRgbDevice::lost(const std::string& why) {
    m_wasTaken = false;
    return {DeviceStatus::Kind::Lost, serverText() + " " + why + "."};
}

void OpenRgbDevice::close() {
    if (m_wasTaken)
        giveBack();
    if (m_keyboard)
        m_options.placing->setBoard(std::nullopt);
    m_keyboard.reset();
    m_wasTaken = false;
    m_isTaken = false;
    if (m_session && !m_session->awaitsAnswer())
        m_session.reset();
}

void OpenRgbDevice::giveBack() {
    m_session->hurry();
    m_session->drain();
    if (m_session->listHasChanged()) {
        std::optional<Keyboard> keyboard = chooseKeyboard(*m_session, rankSame(m_keyboard->controller));
        if (!keyboard)
            return;
        m_keyboard = std::move(keyboard);
    }
    m_session->listen(m_frameSentAt + kUntilWritten - platform::monotonicNow());
    const Controller& controller = m_keyboard->controller;
    const auto mode = std::ranges::find(controller.modes, m_found->modeName, &Mode::name);
    if (mode != controller.modes.end()) {
        const auto index = static_cast<std::size_t>(mode - controller.modes.begin());
        if (index != m_keyboard->perLedMode)
            m_session->send(updateModePacket(m_keyboard->device, index, mode->block));
        // In a mode that has no colours of LEDs, they would end the keyboard's own effect.
        if (!showsLedColors(*mode))
            return;
    }
    std::vector<Rgb> colors = m_found->colors;
    colors.resize(std::min(colors.size(), controller.colors.size()));
    const ColorPacket frame = colorPacket(m_keyboard->device, colors);
    m_session->send(frame.bytes());
    m_session->listen(kRepeatAfter);
    if (!m_session->listHasChanged())
        m_session->send(frame.bytes());
}

DevicePace OpenRgbDevice::pace() const {
    return {.interval = Duration::zero(), .repeatAfter = kRepeatAfter};
}

std::string OpenRgbDevice::serverText() const {
    return "The OpenRGB server at " + m_options.server.host + ":" + std::to_string(m_options.server.port);
}

} // namespace glimra::keyboards::openrgb
