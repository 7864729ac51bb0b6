#include "keyboards/openrgb/key_names.h"

#include "keyboards/model/keyboard_model.h"
#include "keyboards/openrgb/encoder.h"

#include <gmock/gmock.h>

#include <set>

namespace glimra::keyboards::openrgb {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

Controller withLeds(std::vector<std::string> names) {
    Controller controller;
    controller.leds = std::move(names);
    controller.colors.resize(controller.leds.size());
    return controller;
}

/// The LEDs of one key.
std::vector<std::size_t> ledsOf(const Controller& controller, KeyName name) {
    std::vector<std::size_t> leds;
    for (const LedOfKey& led : ledsOfKeys(controller))
        if (led.key == keyIndex(name))
            leds.push_back(led.led);
    return leds;
}

TEST(KeyNames, EveryKeyOfAFullKeyboardHasItsLed) {
    const Controller controller = tests::fullKeyboard();
    std::set<std::size_t> leds;
    std::set<std::size_t> keys;
    for (const LedOfKey& led : ledsOfKeys(controller)) {
        leds.insert(led.led);
        keys.insert(led.key);
    }
    EXPECT_EQ(leds.size(), 104U);
    EXPECT_EQ(keys.size(), 104U);
    EXPECT_EQ(controller.leds[ledsOf(controller, 0x11C).at(0)], "Key: Number Pad Enter");
    EXPECT_EQ(controller.leds[ledsOf(controller, 0x15C).at(0)], "Key: Right Fn")
        << "for want of a Windows key";
}

TEST(KeyNames, PlacesFindTheSameLedsWhenNamesSayNothing) {
    const Controller named = tests::fullKeyboard();
    Controller nameless = named;
    for (std::string& led : nameless.leds)
        led = "LED";
    EXPECT_THAT(ledsOfKeys(nameless), testing::UnorderedElementsAreArray(ledsOfKeys(named)));

    // Without a number pad the first columns are the same.
    Matrix& matrix = nameless.zones[0].matrix;
    std::vector<std::uint32_t> cells;
    for (std::size_t cell = 0; cell < matrix.cells.size(); ++cell)
        if (cell % matrix.width < 17)
            cells.push_back(matrix.cells[cell]);
    matrix.cells = cells;
    matrix.width = 17;
    EXPECT_EQ(ledsOfKeys(nameless).size(), 87U);
    // In a wider one they are further to the right, and each has a place of its own at its left.
    matrix = named.zones[0].matrix;
    matrix.width += 2;
    for (std::size_t row = 0; row < matrix.height; ++row)
        for (const std::size_t column : {0U, 1U})
            matrix.cells.insert(matrix.cells.begin() +
                                    static_cast<std::ptrdiff_t>(row * matrix.width + column),
                                column == 0 ? 104 + static_cast<std::uint32_t>(row) : Matrix::kNoLed);
    nameless.zones[0].ledCount += matrix.height;
    nameless.leds.resize(nameless.zones[0].ledCount);
    nameless.colors.resize(nameless.leds.size());
    EXPECT_THAT(ledsOfKeys(nameless), testing::UnorderedElementsAreArray(ledsOfKeys(named)));

    // A small keyboard has no function row, so the others lie one row higher, and lacks a key among them.
    nameless.zones[0] = named.zones[0];
    matrix.cells.erase(matrix.cells.begin(), matrix.cells.begin() + matrix.width);
    --matrix.height;
    matrix.cells[matrix.width + 4] = Matrix::kNoLed;
    EXPECT_EQ(ledsOfKeys(nameless).size(), 87U);
    EXPECT_THAT(ledsOfKeys(named), testing::IsSupersetOf(ledsOfKeys(nameless)));

    matrix.cells.assign(matrix.cells.size(), 5000); // beyond the zone
    EXPECT_EQ(ledsOfKeys(nameless).at(7), (LedOfKey{7, kWholeBoard})) << "without places it has one color";
    nameless.type = 6;
    EXPECT_THAT(ledsOfKeys(nameless), IsEmpty());
}

TEST(KeyNames, ExactNamesComeBeforeSimilarOnesAndBestBeforeOthers) {
    const Controller controller =
        withLeds({" key: ENTER (iso) ", "key: w", "Key: W", "Key: Right Fn", "Key: Right Windows",
                  "Key: Space", "Key: Space LED 2", "Key: #"});
    EXPECT_THAT(ledsOf(controller, 0x1C), UnorderedElementsAre(0));
    EXPECT_THAT(ledsOf(controller, 0x11), UnorderedElementsAre(2));
    EXPECT_THAT(ledsOf(controller, 0x15C), UnorderedElementsAre(4));
    EXPECT_THAT(ledsOf(controller, 0x39), UnorderedElementsAre(5, 6)) << "both lights of a wide key";
    EXPECT_THAT(ledsOf(controller, 0x2B), UnorderedElementsAre(7)) << "where European keyboards have it";
}

TEST(KeyNames, KeysOfTheMakersOwnAreFoundUnderAllTheirNames) {
    const Controller plain = withLeds({"Key: G1", "G2", "Key: M1", "Logo", "Key: Logo Left", "Mode Logo"});
    EXPECT_THAT(ledsOf(plain, 0xFFF1), UnorderedElementsAre(0)) << "not M1, which is another key there";
    EXPECT_THAT(ledsOf(plain, 0xFFF2), UnorderedElementsAre(1));
    EXPECT_THAT(ledsOf(plain, 0xFFFF1), UnorderedElementsAre(3, 4));
    EXPECT_THAT(ledsOf(withLeds({"Key: Macro G9"}), 0xFFF9), UnorderedElementsAre(0));
    EXPECT_THAT(ledsOf(withLeds({"Key: Macro 3"}), 0xFFF3), UnorderedElementsAre(0));
    EXPECT_THAT(ledsOf(withLeds({"Key: M5"}), 0xFFF5), UnorderedElementsAre(0));
    EXPECT_THAT(ledsOf(withLeds({"Key: M10"}), 0xFFF1), IsEmpty());
}

} // namespace
} // namespace glimra::keyboards::openrgb
