#include "keyboards/openrgb/key_names.h"

#include "keyboards/model/keyboard_model.h"
#include "keyboards/openrgb/key_places.h"
#include "keyboards/openrgb/named_keys.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace glimra::keyboards::openrgb {

namespace {

constexpr std::string_view kKeyPrefix = "Key: ";
constexpr std::string_view kTwinSuffix = " LED 2";
constexpr std::string_view kLogo = "logo";
constexpr lighting::KeyCode kLogoCode = 0x209;

/// When fewer keys than this are found by name, the keyboard's LEDs are taken to have unusual names.
constexpr std::size_t kFewKeys = 20;

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

/// Finds the LEDs of a device by their names.
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

    /// The LEDs with exactly this name. When there are none, those whose names differ from it only in capital
    /// letters and in spaces around it.
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

/// Collects the LEDs of keys. An LED that has been given to a key is not given to another.
class Collector {
public:
    explicit Collector(std::size_t ledCount) : m_isTaken(ledCount) {}

    /// Adds the LEDs that have the first of these names that any LED has.
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

/// The names that the LED of a macro key may have, since every maker names such keys differently.
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

bool isOfOrdinaryKey(const LedOfKey& led) {
    return lighting::kKeyboardLayout[led.key].code < lighting::kFirstIndividualCode;
}

/// Gives the LEDs that belong to no key to all of them.
void addWholeBoard(std::vector<LedOfKey>& leds, std::size_t ledCount) {
    std::vector<bool> isTaken(ledCount);
    for (const LedOfKey& led : leds)
        isTaken[led.led] = true;
    for (std::size_t led = 0; led < ledCount; ++led)
        if (!isTaken[led])
            leds.push_back({led, kWholeBoard});
}

} // namespace

std::vector<LedOfKey> ledsOfKeys(const Controller& controller) {
    std::vector<LedOfKey> named = byName(controller);
    if (named.size() >= kFewKeys)
        return named;
    std::vector<LedOfKey> placed = ledsByPlace(controller);
    std::vector<LedOfKey> leds = placed.size() > named.size() ? placed : named;
    if (controller.type == kKeyboardType && std::ranges::none_of(leds, isOfOrdinaryKey))
        addWholeBoard(leds, controller.litLeds());
    return leds;
}

bool isKeyboard(const Controller& controller) {
    const auto isNamedLikeKey = [](const std::string& name) { return name.starts_with(kKeyPrefix); };
    return controller.type == kKeyboardType ||
           std::ranges::count_if(controller.leds, isNamedLikeKey) >= static_cast<std::ptrdiff_t>(kFewKeys);
}

} // namespace glimra::keyboards::openrgb
