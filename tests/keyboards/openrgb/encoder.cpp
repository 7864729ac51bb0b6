#include "keyboards/openrgb/encoder.h"

#include <sstream>

namespace glimra::tests {

using namespace keyboards::openrgb;

namespace {

using Payload = std::vector<std::uint8_t>;

void appendNumbers(Payload& to, const std::vector<std::uint32_t>& numbers) {
    for (const std::uint32_t number : numbers)
        appendU32(to, number);
}

void appendCount(Payload& to, std::size_t count) {
    appendU16(to, static_cast<std::uint16_t>(count));
}

void appendText(Payload& to, std::string_view text) {
    appendCount(to, text.size() + 1);
    to.insert(to.end(), text.begin(), text.end());
    to.push_back(0);
}

void appendColors(Payload& to, const std::vector<Rgb>& colors) {
    appendCount(to, colors.size());
    // Servers leave anything in the fourth byte.
    for (const Rgb& color : colors)
        to.insert(to.end(), {color.red, color.green, color.blue, 0xEE});
}

void appendMatrix(Payload& to, const Matrix& matrix) {
    appendCount(to, matrix.cells.empty() ? 0 : 8 + 4 * matrix.cells.size());
    if (!matrix.cells.empty())
        appendNumbers(to, {matrix.height, matrix.width});
    appendNumbers(to, matrix.cells);
}

void appendZone(Payload& to, const Zone& zone, std::uint32_t version) {
    // A zone of one LED is one for effects, which has as many as the player says but only one colour.
    const bool isForEffects = version >= 5 && zone.ledCount == 1;
    const auto ledCount = static_cast<std::uint32_t>(isForEffects ? 9 : zone.ledCount);
    appendText(to, "Zone");
    appendNumbers(to, {2, ledCount, ledCount, ledCount});
    appendMatrix(to, zone.matrix);
    const std::size_t segments = version >= 4 ? zone.ledCount % 21 : 0;
    if (version >= 4)
        appendCount(to, segments);
    for (std::size_t segment = 0; segment < segments; ++segment) {
        appendText(to, "Segment");
        appendNumbers(to, {1, 0, 1});
        if (version >= 6)
            to.insert(to.end(), 2 + 4, 0);
    }
    if (version >= 5)
        appendU32(to, isForEffects ? 1 : 0);
    if (version >= 6) {
        appendU32(to, 0);
        appendCount(to, 1);
        appendBytes(to, encodeMode({.name = "Of the zone", .block = {}}, version));
        appendText(to, "Zone");
    }
}

void addZone(Controller& device, const std::vector<std::string>& names, Matrix matrix = {}) {
    device.zones.push_back({device.leds.size(), names.size(), std::move(matrix)});
    for (const std::string& name : names) {
        device.leds.push_back(name);
        // Dark, but each its own.
        device.colors.push_back({static_cast<std::uint8_t>(device.leds.size()), 2, 3});
    }
}

Controller keyboard(const std::string& name) {
    Controller device;
    device.type = kKeyboardType;
    device.name = name;
    device.serial = "S1";
    device.modes = {{.name = "Rainbow", .flags = 0x41, .colorMode = 2, .block = {}},
                    {.name = "Direct", .flags = 1U << 5, .colorMode = 1, .block = {}}};
    return device;
}

constexpr const char* kFullRows[] = {
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
constexpr std::size_t kColumns = 21;

} // namespace

Payload encodeMode(const Mode& mode, std::uint32_t version) {
    Payload block;
    appendText(block, mode.name);
    if (version < 6)
        appendU32(block, 7);
    appendNumbers(block, {mode.flags, 0, 100});
    if (version >= 3)
        appendNumbers(block, {0, 100});
    appendNumbers(block, {0, 2, 40});
    if (version >= 3)
        appendU32(block, 100);
    appendNumbers(block, {0, mode.colorMode});
    appendColors(block, std::vector<Rgb>(mode.colorMode == 2 ? 2 : 0, {9, 8, 7}));
    return block;
}

Payload encodeDevice(const Controller& device, std::uint32_t version) {
    Payload body;
    appendU32(body, static_cast<std::uint32_t>(device.type));
    appendText(body, device.name);
    if (version >= 1)
        appendText(body, "Vendor");
    for (const std::string& text :
         {std::string("A board"), std::string("1.0"), device.serial, device.location})
        appendText(body, text);
    appendCount(body, device.modes.size());
    appendU32(body, static_cast<std::uint32_t>(device.activeMode));
    for (const Mode& mode : device.modes)
        appendBytes(body, encodeMode(mode, version));
    appendCount(body, device.zones.size());
    for (const Zone& zone : device.zones)
        appendZone(body, zone, version);
    appendCount(body, device.leds.size());
    for (const std::string& led : device.leds) {
        appendText(body, led);
        if (version < 6)
            appendU32(body, 0xDEADBEEF);
    }
    appendColors(body, device.colors);
    if (version >= 5) {
        appendCount(body, 2);
        appendText(body, "");
        appendText(body, "Key: Z");
        appendU32(body, 1);
    }
    if (version >= 6) {
        appendText(body, "Mine");
        appendNumbers(body, {4, 0});
    }

    Payload payload;
    appendU32(payload, static_cast<std::uint32_t>(4 + body.size()));
    appendBytes(payload, body);
    return payload;
}

Controller smallKeyboard(const std::string& name) {
    Controller device = keyboard(name);
    addZone(device, {"Underglow LED 1"});
    addZone(device, {"Underglow LED 2"});
    addZone(device, {"Key: Escape", "Key: W", "Key: G1", "Logo"});
    return device;
}

Controller fullKeyboard(const std::string& name) {
    Matrix matrix{.height = std::size(kFullRows), .width = kColumns, .cells = {}};
    std::vector<std::string> names;
    for (const char* const row : kFullRows) {
        std::istringstream keys(row);
        for (std::size_t column = 0; column < kColumns; ++column) {
            std::string key;
            std::getline(keys, key, '|');
            matrix.cells.push_back(key.empty() ? Matrix::kNoLed : static_cast<std::uint32_t>(names.size()));
            if (!key.empty())
                names.push_back("Key: " + key);
        }
    }
    Controller device = keyboard(name);
    addZone(device, names, std::move(matrix));
    return device;
}

} // namespace glimra::tests
