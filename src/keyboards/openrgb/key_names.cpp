#include "keyboards/openrgb/key_names.h"

#include "keyboards/model/keyboard_model.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace glimra::keyboards::openrgb {

namespace {

struct NamedKey {
    lighting::KeyCode code;
    /// In the matrix of a keyboard with US layout, with or without number pad.
    std::size_t row;
    std::size_t column;
    /// Behind "Key: ", the best first; empty behind the last. Names stand for places of the US layout,
    /// whatever is printed on the cap.
    std::array<std::string_view, 3> names;
};

constexpr std::array<NamedKey, 104> kNamedKeys{{
    {0x1, 0, 0, {"Escape"}},
    {0x3B, 0, 2, {"F1"}},
    {0x3C, 0, 3, {"F2"}},
    {0x3D, 0, 4, {"F3"}},
    {0x3E, 0, 5, {"F4"}},
    {0x3F, 0, 6, {"F5"}},
    {0x40, 0, 7, {"F6"}},
    {0x41, 0, 8, {"F7"}},
    {0x42, 0, 9, {"F8"}},
    {0x43, 0, 10, {"F9"}},
    {0x44, 0, 11, {"F10"}},
    {0x57, 0, 12, {"F11"}},
    {0x58, 0, 13, {"F12"}},
    {0x137, 0, 14, {"Print Screen"}},
    {0x46, 0, 15, {"Scroll Lock"}},
    {0x145, 0, 16, {"Pause/Break", "Pause"}},
    {0x29, 1, 0, {"`"}},
    {0x2, 1, 1, {"1"}},
    {0x3, 1, 2, {"2"}},
    {0x4, 1, 3, {"3"}},
    {0x5, 1, 4, {"4"}},
    {0x6, 1, 5, {"5"}},
    {0x7, 1, 6, {"6"}},
    {0x8, 1, 7, {"7"}},
    {0x9, 1, 8, {"8"}},
    {0xA, 1, 9, {"9"}},
    {0xB, 1, 10, {"0"}},
    {0xC, 1, 11, {"-"}},
    {0xD, 1, 12, {"="}},
    {0xE, 1, 13, {"Backspace"}},
    {0x152, 1, 14, {"Insert"}},
    {0x147, 1, 15, {"Home"}},
    {0x149, 1, 16, {"Page Up"}},
    {0x45, 1, 17, {"Num Lock"}},
    {0x135, 1, 18, {"Number Pad /"}},
    {0x37, 1, 19, {"Number Pad *"}},
    {0x4A, 1, 20, {"Number Pad -"}},
    {0xF, 2, 0, {"Tab"}},
    {0x10, 2, 1, {"Q"}},
    {0x11, 2, 2, {"W"}},
    {0x12, 2, 3, {"E"}},
    {0x13, 2, 4, {"R"}},
    {0x14, 2, 5, {"T"}},
    {0x15, 2, 6, {"Y"}},
    {0x16, 2, 7, {"U"}},
    {0x17, 2, 8, {"I"}},
    {0x18, 2, 9, {"O"}},
    {0x19, 2, 10, {"P"}},
    {0x1A, 2, 11, {"["}},
    {0x1B, 2, 12, {"]"}},
    {0x2B, 2, 13, {"\\ (ANSI)", "\\", "#"}},
    {0x153, 2, 14, {"Delete"}},
    {0x14F, 2, 15, {"End"}},
    {0x151, 2, 16, {"Page Down"}},
    {0x47, 2, 17, {"Number Pad 7"}},
    {0x48, 2, 18, {"Number Pad 8"}},
    {0x49, 2, 19, {"Number Pad 9"}},
    {0x4E, 2, 20, {"Number Pad +"}},
    {0x3A, 3, 0, {"Caps Lock"}},
    {0x1E, 3, 1, {"A"}},
    {0x1F, 3, 2, {"S"}},
    {0x20, 3, 3, {"D"}},
    {0x21, 3, 4, {"F"}},
    {0x22, 3, 5, {"G"}},
    {0x23, 3, 6, {"H"}},
    {0x24, 3, 7, {"J"}},
    {0x25, 3, 8, {"K"}},
    {0x26, 3, 9, {"L"}},
    {0x27, 3, 10, {";"}},
    {0x28, 3, 11, {"'"}},
    {0x1C, 3, 13, {"Enter", "Enter (ISO)"}},
    {0x4B, 3, 17, {"Number Pad 4"}},
    {0x4C, 3, 18, {"Number Pad 5"}},
    {0x4D, 3, 19, {"Number Pad 6"}},
    {0x2A, 4, 0, {"Left Shift"}},
    {0x2C, 4, 2, {"Z"}},
    {0x2D, 4, 3, {"X"}},
    {0x2E, 4, 4, {"C"}},
    {0x2F, 4, 5, {"V"}},
    {0x30, 4, 6, {"B"}},
    {0x31, 4, 7, {"N"}},
    {0x32, 4, 8, {"M"}},
    {0x33, 4, 9, {","}},
    {0x34, 4, 10, {"."}},
    {0x35, 4, 11, {"/"}},
    {0x36, 4, 13, {"Right Shift"}},
    {0x148, 4, 15, {"Up Arrow"}},
    {0x4F, 4, 17, {"Number Pad 1"}},
    {0x50, 4, 18, {"Number Pad 2"}},
    {0x51, 4, 19, {"Number Pad 3"}},
    {0x11C, 4, 20, {"Number Pad Enter"}},
    {0x1D, 5, 0, {"Left Control"}},
    {0x15B, 5, 1, {"Left Windows"}},
    {0x38, 5, 2, {"Left Alt"}},
    {0x39, 5, 6, {"Space"}},
    {0x138, 5, 10, {"Right Alt"}},
    {0x15C, 5, 11, {"Right Windows", "Right Fn"}},
    {0x15D, 5, 12, {"Menu"}},
    {0x11D, 5, 13, {"Right Control"}},
    {0x14B, 5, 14, {"Left Arrow"}},
    {0x150, 5, 15, {"Down Arrow"}},
    {0x14D, 5, 16, {"Right Arrow"}},
    {0x52, 5, 18, {"Number Pad 0"}},
    {0x53, 5, 19, {"Number Pad .", "Number Pad ,"}},
}};

constexpr std::string_view kKeyPrefix = "Key: ";
constexpr std::string_view kTwinSuffix = " LED 2";
constexpr std::string_view kLogo = "logo";
constexpr lighting::KeyCode kLogoCode = 0x209;

/// With fewer keys found by name, a keyboard counts as one with names of its own.
constexpr std::size_t kFewKeys = 20;

constexpr std::size_t kMatrixRows = 6;
/// Without and with a number pad.
constexpr std::size_t kFewestColumns = 17;
constexpr std::size_t kMostColumns = 21;

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string plain(std::string_view name) {
    std::string text(trimmed(name));
    for (char& c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

/// The LEDs of a device, found by their names.
class LedNames {
public:
    explicit LedNames(const Controller& controller) {
        for (std::size_t led = 0; led < controller.litLeds(); ++led) {
            std::string_view name = controller.leds[led];
            if (name.ends_with(kTwinSuffix))
                name.remove_suffix(kTwinSuffix.size());
            m_exact.emplace_back(name, led);
            m_plain.emplace_back(plain(name), led);
        }
        std::ranges::sort(m_exact);
        std::ranges::sort(m_plain);
    }

    /// The LEDs with this name, or else those that differ in capitals and spaces only.
    std::vector<std::size_t> find(const std::string& name) const {
        std::vector<std::size_t> leds = matches(m_exact, std::string_view(name));
        return leds.empty() ? matches(m_plain, plain(name)) : leds;
    }

    std::vector<std::size_t> findLogo() const {
        std::vector<std::size_t> leds;
        for (const auto& [name, led] : m_plain) {
            const std::string_view prefix = "key: ";
            const std::string_view rest =
                std::string_view(name).substr(name.starts_with(prefix) ? prefix.size() : 0);
            if (rest.starts_with(kLogo))
                leds.push_back(led);
        }
        return leds;
    }

private:
    template <class Text>
    using Names = std::vector<std::pair<Text, std::size_t>>;

    template <class Text>
    static std::vector<std::size_t> matches(const Names<Text>& names, const Text& wanted) {
        std::vector<std::size_t> leds;
        auto name = std::ranges::lower_bound(names, wanted, {}, &std::pair<Text, std::size_t>::first);
        for (; name != names.end() && name->first == wanted; ++name)
            leds.push_back(name->second);
        return leds;
    }

    Names<std::string_view> m_exact;
    Names<std::string> m_plain;
};

/// Collects LEDs of keys, each LED once.
class Collector {
public:
    explicit Collector(std::size_t ledCount) : m_isTaken(ledCount) {}

    /// The first of these that any LED has.
    void addNamed(lighting::KeyCode code, const LedNames& leds, const std::vector<std::string>& names) {
        for (const std::string& name : names)
            if (add(code, leds.find(name)))
                return;
    }

    bool add(lighting::KeyCode code, const std::vector<std::size_t>& leds) {
        const std::optional<std::size_t> key = keyIndex(lighting::driverKeyName(code));
        for (const std::size_t led : leds)
            if (key && led < m_isTaken.size() && !m_isTaken[led]) {
                m_isTaken[led] = true;
                m_found.push_back({led, *key});
            }
        return !leds.empty();
    }

    const std::vector<LedOfKey>& found() const { return m_found; }

private:
    std::vector<bool> m_isTaken;
    std::vector<LedOfKey> m_found;
};

/// Every maker calls the keys of its own differently.
std::vector<std::string> gKeyNames(lighting::KeyCode code) {
    const std::string number = std::to_string(code - lighting::kFirstIndividualCode + 1);
    std::vector<std::string> names;
    for (const char* const stem : {"G", "Macro G", "Macro ", "M"})
        for (const std::string_view prefix : {kKeyPrefix, std::string_view()})
            names.push_back(std::string(prefix).append(stem).append(number));
    return names;
}

std::vector<LedOfKey> byName(const Controller& controller) {
    const LedNames leds(controller);
    Collector collector(controller.litLeds());
    for (const NamedKey& key : kNamedKeys) {
        std::vector<std::string> names;
        for (const std::string_view name : key.names)
            if (!name.empty())
                names.push_back(std::string(kKeyPrefix).append(name));
        collector.addNamed(key.code, leds, names);
    }
    for (const lighting::IndividuallyLitKey& key : lighting::individuallyLitKeys)
        if (key.code < kLogoCode)
            collector.addNamed(key.code, leds, gKeyNames(key.code));
    collector.add(kLogoCode, leds.findLogo());
    return collector.found();
}

std::vector<LedOfKey> byPlace(const Controller& controller) {
    Collector collector(controller.litLeds());
    const auto zone = std::ranges::find_if(controller.zones, [](const Zone& candidate) {
        return candidate.matrix.height == kMatrixRows && candidate.matrix.width >= kFewestColumns &&
               candidate.matrix.width <= kMostColumns;
    });
    if (zone == controller.zones.end())
        return {};
    for (const NamedKey& key : kNamedKeys) {
        if (key.column >= zone->matrix.width)
            continue;
        const std::uint32_t led = zone->matrix.cells[key.row * zone->matrix.width + key.column];
        if (led < zone->ledCount)
            collector.add(key.code, {zone->firstLed + led});
    }
    return collector.found();
}

} // namespace

std::vector<LedOfKey> ledsOfKeys(const Controller& controller) {
    std::vector<LedOfKey> named = byName(controller);
    if (named.size() >= kFewKeys)
        return named;
    std::vector<LedOfKey> placed = byPlace(controller);
    return placed.size() > named.size() ? placed : named;
}

bool isKeyboard(const Controller& controller) {
    const auto isNamedLikeKey = [](const std::string& name) { return name.starts_with(kKeyPrefix); };
    return controller.type == kKeyboardType ||
           std::ranges::count_if(controller.leds, isNamedLikeKey) >= static_cast<std::ptrdiff_t>(kFewKeys);
}

} // namespace glimra::keyboards::openrgb
