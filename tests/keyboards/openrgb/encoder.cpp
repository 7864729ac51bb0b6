#include "keyboards/openrgb/encoder.h"

#include "keyboards/openrgb/bytes.h"

#include <string_view>

namespace glimra::tests {

using keyboards::openrgb::appendBytes;
using keyboards::openrgb::appendU16;
using keyboards::openrgb::appendU32;

namespace {

using Payload = std::vector<std::uint8_t>;

void appendText(Payload& to, std::string_view text) {
    appendU16(to, static_cast<std::uint16_t>(text.size() + 1));
    to.insert(to.end(), text.begin(), text.end());
    to.push_back(0);
}

void appendColors(Payload& to, const std::vector<Rgb>& colors) {
    appendU16(to, static_cast<std::uint16_t>(colors.size()));
    // Servers leave anything in the fourth byte.
    for (const Rgb& color : colors)
        to.insert(to.end(), {color.red, color.green, color.blue, 0xEE});
}

void appendZone(Payload& to, const ServerZone& zone, std::uint32_t version) {
    appendText(to, zone.name);
    for (const std::uint32_t number : {2U, zone.ledCount, zone.ledCount, zone.ledCount})
        appendU32(to, number);
    appendU16(to, static_cast<std::uint16_t>(zone.cells.empty() ? 0 : 8 + 4 * zone.cells.size()));
    if (!zone.cells.empty()) {
        appendU32(to, zone.height);
        appendU32(to, zone.width);
        for (const std::uint32_t cell : zone.cells)
            appendU32(to, cell);
    }
    if (version >= 4) {
        appendU16(to, static_cast<std::uint16_t>(zone.segments.size()));
        for (const ServerSegment& segment : zone.segments) {
            appendText(to, segment.name);
            for (const std::uint32_t number : {1U, segment.firstLed, segment.ledCount})
                appendU32(to, number);
            if (version >= 6) {
                appendU16(to, 0);
                appendU32(to, 0);
            }
        }
    }
    if (version >= 5)
        appendU32(to, zone.flags);
    if (version >= 6) {
        appendU32(to, 0);
        appendU16(to, 1);
        appendBytes(to, encodeMode({.name = "Of the zone"}, version));
        appendText(to, zone.name);
    }
}

void appendEnd(Payload& to, const ServerDevice& device, std::uint32_t version) {
    if (version >= 5) {
        appendU16(to, static_cast<std::uint16_t>(device.alternateNames.size()));
        for (const std::string& name : device.alternateNames)
            appendText(to, name);
        appendU32(to, 1);
    }
    if (version >= 6) {
        appendText(to, device.name + " of mine");
        constexpr std::string_view kConfiguration = "{\"a\":1}";
        appendU32(to, kConfiguration.size() + 1);
        to.insert(to.end(), kConfiguration.begin(), kConfiguration.end());
        to.push_back(0);
    }
}

void addLeds(ServerDevice& device, ServerZone zone, const std::vector<std::string>& names) {
    zone.ledCount = static_cast<std::uint32_t>(names.size());
    device.zones.push_back(std::move(zone));
    device.leds.insert(device.leds.end(), names.begin(), names.end());
}

/// Every LED in a dark colour of its own.
void colorLeds(ServerDevice& device) {
    for (std::size_t led = 0; led < device.leds.size(); ++led)
        device.colors.push_back({static_cast<std::uint8_t>(led + 1), 2, 3});
}

constexpr std::string_view kFullRows[] = {
    "Escape||F1|F2|F3|F4|F5|F6|F7|F8|F9|F10|F11|F12|Print Screen|Scroll Lock|Pause/Break",
    "`|1|2|3|4|5|6|7|8|9|0|-|=|Backspace|Insert|Home|Page Up|Num Lock|Number Pad /|Number Pad *|Number Pad -",
    "Tab|Q|W|E|R|T|Y|U|I|O|P|[|]|\\ (ANSI)|Delete|End|Page Down|Number Pad 7|Number Pad 8|Number Pad "
    "9|Number Pad +",
    "Caps Lock|A|S|D|F|G|H|J|K|L|;|'||Enter||||Number Pad 4|Number Pad 5|Number Pad 6",
    "Left Shift||Z|X|C|V|B|N|M|,|.|/||Right Shift||Up Arrow||Number Pad 1|Number Pad 2|Number Pad 3|Number "
    "Pad Enter",
    "Left Control|Left Windows|Left Alt||||Space||||Right Alt|Right Fn|Menu|Right Control|Left Arrow|Down "
    "Arrow|Right Arrow||Number Pad 0|Number Pad .",
};
constexpr std::uint32_t kColumns = 21;
constexpr std::uint32_t kNoLed = 0xFFFFFFFF;

/// One row of names, parted by bars.
std::vector<std::string> parted(std::string_view row) {
    std::vector<std::string> names(1);
    for (const char c : row)
        if (c == '|')
            names.emplace_back();
        else
            names.back() += c;
    return names;
}

} // namespace

std::vector<std::uint8_t> encodeMode(const ServerMode& mode, std::uint32_t version) {
    Payload block;
    appendText(block, mode.name);
    if (version < 6)
        appendU32(block, mode.value);
    appendU32(block, mode.flags);
    for (const std::uint32_t speedLimit : {0U, 100U})
        appendU32(block, speedLimit);
    if (version >= 3)
        for (const std::uint32_t brightnessLimit : {0U, 100U})
            appendU32(block, brightnessLimit);
    for (const std::uint32_t colorLimit : {0U, 2U})
        appendU32(block, colorLimit);
    appendU32(block, mode.speed);
    if (version >= 3)
        appendU32(block, mode.brightness);
    appendU32(block, 0);
    appendU32(block, mode.colorMode);
    appendColors(block, mode.colors);
    return block;
}

std::vector<std::uint8_t> encodeDevice(const ServerDevice& device, std::uint32_t version) {
    Payload body;
    appendU32(body, static_cast<std::uint32_t>(device.type));
    appendText(body, device.name);
    if (version >= 1)
        appendText(body, "Vendor");
    for (const std::string_view text : {std::string_view("A board"), std::string_view("1.0"),
                                        std::string_view(device.serial), std::string_view(device.location)})
        appendText(body, text);
    appendU16(body, static_cast<std::uint16_t>(device.modes.size()));
    appendU32(body, static_cast<std::uint32_t>(device.activeMode));
    for (const ServerMode& mode : device.modes)
        appendBytes(body, encodeMode(mode, version));
    appendU16(body, static_cast<std::uint16_t>(device.zones.size()));
    for (const ServerZone& zone : device.zones)
        appendZone(body, zone, version);
    appendU16(body, static_cast<std::uint16_t>(device.leds.size()));
    for (const std::string& led : device.leds) {
        appendText(body, led);
        if (version < 6)
            appendU32(body, 0xDEADBEEF);
    }
    appendColors(body, device.colors);
    appendEnd(body, device, version);

    Payload payload;
    appendU32(payload, static_cast<std::uint32_t>(4 + body.size()));
    appendBytes(payload, body);
    return payload;
}

ServerDevice smallKeyboard(const std::string& name) {
    ServerDevice device;
    device.name = name;
    device.modes = {{.name = "Rainbow",
                     .flags = 0x41,
                     .colorMode = 2,
                     .value = 7,
                     .speed = 40,
                     .colors = {{9, 8, 7}, {6, 5, 4}}},
                    {.name = "Direct", .value = 0xFFFF, .brightness = 100}};
    addLeds(device, {.name = "Strip", .segments = {{"Half", 0, 1}, {"Other half", 1, 1}}},
            {"Underglow LED 1", "Underglow LED 2"});
    addLeds(device, {.name = "Empty"}, {});
    addLeds(device, {.name = "Keys"}, {"Key: Escape", "Key: W", "Key: G1", "Logo"});
    device.alternateNames = {"", "", "", "Key: Z"};
    colorLeds(device);
    return device;
}

ServerDevice fullKeyboard(const std::string& name) {
    ServerDevice device;
    device.name = name;
    ServerZone zone{.height = std::size(kFullRows), .width = kColumns};
    std::vector<std::string> names;
    for (const std::string_view row : kFullRows) {
        std::vector<std::string> keys = parted(row);
        keys.resize(kColumns);
        for (const std::string& key : keys) {
            zone.cells.push_back(key.empty() ? kNoLed : static_cast<std::uint32_t>(names.size()));
            if (!key.empty())
                names.push_back("Key: " + key);
        }
    }
    addLeds(device, zone, names);
    colorLeds(device);
    return device;
}

} // namespace glimra::tests
