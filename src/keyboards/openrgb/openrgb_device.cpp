#include "keyboards/openrgb/openrgb_device.h"

#include <algorithm>
#include <set>
#include <utility>

namespace glimra::keyboards::openrgb {

namespace {

/// A server may hold the last frame of a series back until another one comes, so it is sent twice, this far
/// apart.
constexpr Duration kRepeatAfter = std::chrono::milliseconds(100);

/// How many times the list of devices is read, at most, when it changes each time while it is read.
constexpr int kMostAttempts = 5;

/// A text of the server, cut and cleaned so that it can stand in a line of the log.
std::string printable(std::string_view text) {
    constexpr std::size_t kLongest = 60;
    std::string line(text.substr(0, kLongest));
    for (char& c : line)
        if (c < ' ' || c > '~')
            c = '?';
    return line;
}

std::string lowerCase(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

/// A text that is the same for a device wherever it is in the list, and differs from that of other devices.
/// The three parts cannot run together, because none has a NUL in it.
std::string identityOf(const Controller& controller) {
    return controller.name + '\0' + controller.serial + '\0' + controller.location;
}

const Mode* activeMode(const Controller& controller) {
    const auto index = static_cast<std::size_t>(controller.activeMode);
    return controller.activeMode >= 0 && index < controller.modes.size() ? &controller.modes[index] : nullptr;
}

ColorPacket colorPacket(std::uint32_t device, const std::vector<Rgb>& colors) {
    ColorPacket frame(device, colors.size());
    for (std::size_t led = 0; led < colors.size(); ++led)
        frame.set(led, colors[led]);
    return frame;
}

std::size_t countKeys(const std::vector<LedOfKey>& leds) {
    std::set<std::size_t> keys;
    for (const LedOfKey& led : leds)
        keys.insert(led.key);
    return keys.size();
}

} // namespace

OpenRgbDevice::OpenRgbDevice(Options options) : m_options(std::move(options)) {
}

OpenRgbDevice::~OpenRgbDevice() = default;

OpenResult OpenRgbDevice::open(const WakeEvent& stop) {
    OpenResult result = tryToOpen(stop);
    // No release of the server has the newest version yet, so its form may still have changed.
    if (!result.found && m_session->wasMisunderstood() && m_session->version() == kNewestVersion) {
        m_newestVersion = kNewestVersion - 1;
        result = tryToOpen(stop);
    }
    if (!result.found)
        m_session.reset();
    return result;
}

OpenResult OpenRgbDevice::tryToOpen(const WakeEvent& stop) {
    m_session.reset();
    m_session = std::make_unique<Session>(stop, m_options.timing);
    std::optional<Keyboard> keyboard;
    if (m_session->start(m_options.server, m_newestVersion))
        keyboard = choose([this](const Controller& controller) { return rankForPlayer(controller); });
    if (m_session->isOver())
        return {false, serverText() + " " + m_session->problem() + "."};
    if (!keyboard && m_options.keyboardName.empty())
        return {false, serverText() + " has no keyboard with a light behind each key."};
    if (!keyboard)
        return {false, serverText() + " has no keyboard named \"" + printable(m_options.keyboardName) +
                           "\" with a light behind each key."};
    takeOver(std::move(*keyboard));
    const std::string name = printable(m_keyboard.controller.name);
    return {true,
            "Keyboard \"" + name + "\" found through OpenRGB, with " + std::to_string(m_keyboard.keyCount) +
                " keys.",
            "keyboard " + name + " through OpenRGB"};
}

/// The device for which `rank` gives the highest number; among equals, the one with the most keys. A device
/// of rank 0 is never chosen. None when no device is left, or when the conversation with the server has
/// ended.
template <class Rank>
std::optional<OpenRgbDevice::Keyboard> OpenRgbDevice::choose(Rank rank) {
    // The numbers of devices mean other devices as soon as the list has changed.
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        if (m_session->listHasChanged() && !m_session->waitForQuiet())
            break;
        std::optional<Keyboard> keyboard = chooseFromList(rank);
        if (!m_session->listHasChanged())
            return keyboard;
    }
    return std::nullopt;
}

template <class Rank>
std::optional<OpenRgbDevice::Keyboard> OpenRgbDevice::chooseFromList(Rank rank) {
    std::optional<Keyboard> best;
    std::pair<int, std::size_t> bestWorth{0, 0};
    for (const std::uint32_t device : m_session->controllerList().value_or(std::vector<std::uint32_t>())) {
        std::optional<Keyboard> keyboard = readKeyboard(device);
        if (m_session->isOver() || m_session->listHasChanged())
            return std::nullopt;
        if (!keyboard)
            continue;
        const std::pair worth(rank(keyboard->controller), keyboard->keyCount);
        if (worth.first > 0 && worth > bestWorth) {
            bestWorth = worth;
            best = std::move(keyboard);
        }
    }
    return best;
}

/// Reads what the server says about a device; none when no single key of it can be lit.
std::optional<OpenRgbDevice::Keyboard> OpenRgbDevice::readKeyboard(std::uint32_t device) {
    std::optional<Controller> controller = m_session->controller(device);
    if (!controller)
        return std::nullopt;
    std::vector<LedOfKey> leds = ledsOfKeys(*controller);
    const std::optional<std::size_t> mode = perLedMode(controller->modes);
    if (leds.empty() || !mode)
        return std::nullopt;
    const std::size_t keyCount = countKeys(leds);
    return Keyboard{device, std::move(*controller), std::move(leds), keyCount, *mode};
}

int OpenRgbDevice::rankForPlayer(const Controller& controller) const {
    if (m_options.keyboardName.empty())
        return isKeyboard(controller) ? 1 : 0;
    const std::string name = lowerCase(controller.name);
    const std::string wanted = lowerCase(m_options.keyboardName);
    return name == wanted ? 2 : name.find(wanted) != std::string::npos ? 1 : 0;
}

void OpenRgbDevice::takeOver(Keyboard keyboard) {
    m_keyboard = std::move(keyboard);
    const Controller& controller = m_keyboard.controller;
    const std::string identity = identityOf(controller);
    // A keyboard that is found again after an interruption may still show our own lights; what it showed
    // before them must not be forgotten.
    if (!m_found || m_found->identity != identity) {
        const Mode* const active = activeMode(controller);
        m_found = {identity, active ? active->name : std::string(), controller.colors};
    }
    // The first packet makes the server choose the mode, the second makes it tell the keyboard so.
    m_session->send(packet(PacketId::SetCustomMode, m_keyboard.device));
    m_session->send(updateModePacket(m_keyboard.device, m_keyboard.perLedMode,
                                     controller.modes[m_keyboard.perLedMode].block));
    m_frame = colorPacket(m_keyboard.device, controller.colors);
    m_isLit = true;
}

DeviceStatus OpenRgbDevice::write(std::span<const KeyColor> keys) {
    DeviceStatus status = serve();
    if (status.kind != DeviceStatus::Kind::Ok)
        return status;
    for (const KeyColor& key : keys)
        m_colors[key.key] = key.color;
    for (const LedOfKey& led : m_keyboard.leds)
        m_frame.set(led.led, m_colors[led.key]);
    return m_session->send(m_frame.bytes()) ? DeviceStatus() : lost(m_session->problem());
}

DeviceStatus OpenRgbDevice::serve() {
    if (!m_session->drain())
        return lost(m_session->problem());
    if (m_session->wasRefused())
        return lost("does not let the keyboard be lit");
    return m_session->listHasChanged() ? renew() : DeviceStatus();
}

/// Finds the keyboard again after the server's list of devices has changed.
DeviceStatus OpenRgbDevice::renew() {
    const std::string identity = identityOf(m_keyboard.controller);
    std::optional<Keyboard> keyboard =
        choose([&](const Controller& controller) { return identityOf(controller) == identity ? 1 : 0; });
    if (m_session->isOver())
        return lost(m_session->problem());
    if (!keyboard)
        return lost("has no keyboard \"" + printable(m_keyboard.controller.name) + "\" any more");
    takeOver(std::move(*keyboard));
    return {DeviceStatus::Kind::AllKeysNeeded, {}};
}

DeviceStatus OpenRgbDevice::lost(const std::string& why) {
    m_isLit = false;
    return {DeviceStatus::Kind::Lost, serverText() + " " + why + "."};
}

void OpenRgbDevice::close() {
    if (m_isLit && m_session->drain() && !m_session->listHasChanged())
        giveBack();
    m_isLit = false;
    m_session.reset();
}

void OpenRgbDevice::giveBack() {
    const Controller& controller = m_keyboard.controller;
    const auto mode = std::ranges::find(controller.modes, m_found->modeName, &Mode::name);
    const std::size_t index = static_cast<std::size_t>(mode - controller.modes.begin());
    if (mode != controller.modes.end() && index != m_keyboard.perLedMode)
        m_session->send(updateModePacket(m_keyboard.device, index, mode->block));
    std::vector<Rgb> colors = m_found->colors;
    colors.resize(std::min(colors.size(), controller.colors.size()));
    const ColorPacket frame = colorPacket(m_keyboard.device, colors);
    m_session->send(frame.bytes());
    m_session->listen(kRepeatAfter);
    if (!m_session->listHasChanged())
        m_session->send(frame.bytes());
}

DevicePace OpenRgbDevice::pace() const {
    return {.interval = Duration::zero(), .repeatAfter = kRepeatAfter};
}

int OpenRgbDevice::watchedFd() const {
    return m_session->fd();
}

std::string OpenRgbDevice::serverText() const {
    return "The OpenRGB server at " + m_options.server.host + ":" + std::to_string(m_options.server.port);
}

} // namespace glimra::keyboards::openrgb
