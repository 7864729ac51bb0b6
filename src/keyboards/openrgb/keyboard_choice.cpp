#include "keyboards/openrgb/keyboard_choice.h"

#include "keyboards/model/keyboard_model.h"

#include <algorithm>
#include <set>
#include <utility>

namespace glimra::keyboards::openrgb {

namespace {

/// How many times the list of devices is read, at most, when it changes each time while it is read.
constexpr int kMostAttempts = 5;

std::string lowerCase(std::string text) {
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

std::size_t countKeys(const std::vector<LedOfKey>& leds) {
    std::set<std::size_t> keys;
    for (const LedOfKey& led : leds)
        if (led.key != kWholeBoard)
            keys.insert(led.key);
    return keys.size();
}

/// Reads what the server says about a device; none when no single light of it can be lit.
std::optional<Keyboard> readKeyboard(Session& session, std::uint32_t device) {
    std::optional<Controller> controller = session.controller(device);
    if (!controller)
        return std::nullopt;
    std::vector<LedOfKey> leds = ledsOfKeys(*controller);
    const std::optional<std::size_t> mode = perLedMode(controller->modes);
    if (leds.empty() || !mode)
        return std::nullopt;
    const std::size_t keyCount = countKeys(leds);
    return Keyboard{device, std::move(*controller), std::move(leds), keyCount, *mode};
}

std::optional<Keyboard> chooseFromList(Session& session, const Rank& rank) {
    std::optional<Keyboard> best;
    std::pair<int, std::size_t> bestWorth{0, 0};
    for (const std::uint32_t device : session.controllerList().value_or(std::vector<std::uint32_t>())) {
        std::optional<Keyboard> keyboard = readKeyboard(session, device);
        if (session.isOver() || session.listHasChanged())
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

/// How many bytes the UTF-8 character at the beginning of `text` has; 0 when there is no printable one.
std::size_t printableBytes(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    if (byte(0) < 0x80)
        return byte(0) >= ' ' && byte(0) != 0x7F ? 1 : 0;
    const std::size_t size = byte(0) >= 0xF5 || byte(0) < 0xC2 ? 0
                             : byte(0) >= 0xF0                 ? 4
                             : byte(0) >= 0xE0                 ? 3
                                                               : 2;
    if (size > text.size())
        return 0;
    for (std::size_t i = 1; i < size; ++i)
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    // Control characters, surrogates, and the marks that turn the direction of a whole line.
    const bool isControl = byte(0) == 0xC2 && byte(1) < 0xA0;
    const bool isSurrogate = byte(0) == 0xED && byte(1) >= 0xA0;
    // U+200E and U+200F, U+2028 to U+202E, and U+2066 to U+2069.
    const auto isBetween = [&](std::uint8_t second, std::uint8_t first, std::uint8_t last) {
        return byte(0) == 0xE2 && byte(1) == second && byte(2) >= first && byte(2) <= last;
    };
    const bool isMark =
        isBetween(0x80, 0x8E, 0x8F) || isBetween(0x80, 0xA8, 0xAE) || isBetween(0x81, 0xA6, 0xA9);
    return isControl || isSurrogate || isMark ? 0 : size;
}

} // namespace

std::optional<Keyboard> chooseKeyboard(Session& session, const Rank& rank) {
    // The numbers of devices mean other devices as soon as the list has changed.
    for (int attempt = 0; attempt < kMostAttempts; ++attempt) {
        if (session.listHasChanged() && !session.waitForQuiet())
            break;
        std::optional<Keyboard> keyboard = chooseFromList(session, rank);
        if (!session.listHasChanged())
            return keyboard;
    }
    return std::nullopt;
}

Rank rankByName(const std::string& wanted) {
    return [lower = lowerCase(wanted)](const Controller& controller) {
        if (lower.empty())
            return isKeyboard(controller) ? 1 : 0;
        const std::string name = lowerCase(controller.name);
        return name == lower ? 2 : name.find(lower) != std::string::npos ? 1 : 0;
    };
}

Rank rankSame(const Controller& controller) {
    return [same = identityOf(controller)](const Controller& other) {
        return identityOf(other) == same ? 1 : 0;
    };
}

std::string identityOf(const Controller& controller) {
    // The three parts cannot run together, because none has a NUL in it.
    return controller.name + '\0' + controller.serial + '\0' + controller.location;
}

std::string printable(std::string_view text) {
    constexpr std::size_t kMostCharacters = 60;
    std::string line;
    for (std::size_t count = 0; !text.empty() && count < kMostCharacters; ++count) {
        const std::size_t size = printableBytes(text);
        line += size > 0 ? text.substr(0, size) : "?";
        text.remove_prefix(std::max<std::size_t>(size, 1));
    }
    return line;
}

} // namespace glimra::keyboards::openrgb
