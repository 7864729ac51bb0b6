#include "keyboards/openrgb/key_places.h"

#include "keyboards/model/keyboard_model.h"
#include "keyboards/openrgb/named_keys.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <utility>

namespace glimra::keyboards::openrgb {

namespace {

constexpr int kRows = 6;
constexpr std::uint32_t kMostRows = 16;
constexpr std::uint32_t kMostColumns = 64;
/// A matrix into which fewer keys fit is none of a keyboard.
constexpr int kFewestHits = 20;

/// Something in a row, an LED of the device or a key of the layout, and its column.
struct Spot {
    int column = 0;
    std::size_t index = 0;
};

/// Where the first row and column of the US keyboard are in the matrix.
struct Offset {
    int row = 0;
    int column = 0;
};

/// The LED at a place; none where there is none that can be lit.
std::optional<std::size_t> ledAt(const Zone& zone, int row, int column) {
    const Matrix& matrix = zone.matrix;
    if (row < 0 || column < 0 || row >= static_cast<int>(matrix.height) ||
        column >= static_cast<int>(matrix.width))
        return std::nullopt;
    const std::uint32_t led =
        matrix.cells[static_cast<std::size_t>(row) * matrix.width + static_cast<std::size_t>(column)];
    return led < zone.ledCount ? std::optional(zone.firstLed + led) : std::nullopt;
}

int hitsAt(const Zone& zone, const Offset& offset) {
    return static_cast<int>(std::ranges::count_if(kNamedKeys, [&](const NamedKey& key) {
        return ledAt(zone, static_cast<int>(key.row) + offset.row,
                     static_cast<int>(key.column) + offset.column)
            .has_value();
    }));
}

/// Where most keys of the layout find an LED; among equals, where it is moved least.
Offset bestOffset(const Zone& zone) {
    Offset best;
    std::pair<int, int> bestWorth{-1, 0};
    for (int row = -1; row + 4 < static_cast<int>(zone.matrix.height); ++row)
        for (int column = -2; column + 10 < static_cast<int>(zone.matrix.width); ++column) {
            const Offset offset{row, column};
            const std::pair worth(hitsAt(zone, offset), -std::abs(row) - std::abs(column));
            if (worth > bestWorth) {
                bestWorth = worth;
                best = offset;
            }
        }
    return best;
}

std::vector<Spot> ledsOfRow(const Zone& zone, int row, const Offset& offset) {
    std::vector<Spot> spots;
    for (int column = 0; column < static_cast<int>(zone.matrix.width); ++column)
        if (const auto led = ledAt(zone, row + offset.row, column))
            spots.push_back({column - offset.column, *led});
    return spots;
}

std::vector<Spot> keysOfRow(const Zone& zone, int row, const Offset& offset) {
    std::vector<Spot> spots;
    for (const NamedKey& key : kNamedKeys) {
        const auto index = keyIndex(lighting::driverKeyName(key.code));
        const int column = static_cast<int>(key.column);
        if (index && static_cast<int>(key.row) == row &&
            column + offset.column < static_cast<int>(zone.matrix.width))
            spots.push_back({column, *index});
    }
    return spots;
}

/// Joins LEDs and keys of a row, both in their order, so that the columns differ least altogether. What is
/// left out on either side costs some columns, too: more where there are as many LEDs as keys, since then
/// only the server counts columns in another way.
void align(const std::vector<Spot>& leds, const std::vector<Spot>& keys, std::vector<LedOfKey>& joined) {
    const int skip = leds.size() == keys.size() ? 8 : 2;
    const auto distance = [&](std::size_t led, std::size_t key) {
        return std::abs(leds[led].column - keys[key].column);
    };
    // The least cost of all that comes from the LED `i` and the key `k` on.
    std::vector<std::vector<int>> cost(leds.size() + 1, std::vector<int>(keys.size() + 1));
    for (std::size_t i = leds.size() + 1; i-- > 0;)
        for (std::size_t k = keys.size() + 1; k-- > 0;) {
            if (i == leds.size() || k == keys.size()) {
                cost[i][k] = skip * static_cast<int>(leds.size() - i + keys.size() - k);
                continue;
            }
            const int skipped = skip + std::min(cost[i + 1][k], cost[i][k + 1]);
            cost[i][k] = std::min(distance(i, k) + cost[i + 1][k + 1], skipped);
        }
    for (std::size_t i = 0, k = 0; i < leds.size() && k < keys.size();) {
        if (cost[i][k] == distance(i, k) + cost[i + 1][k + 1])
            joined.push_back({leds[i++].index, keys[k++].index});
        else if (cost[i][k] == skip + cost[i + 1][k])
            ++i;
        else
            ++k;
    }
}

} // namespace

std::vector<LedOfKey> ledsByPlace(const Controller& controller) {
    const auto zone = std::ranges::max_element(
        controller.zones, {}, [](const Zone& candidate) { return candidate.matrix.cells.size(); });
    if (zone == controller.zones.end() || zone->matrix.height > kMostRows ||
        zone->matrix.width > kMostColumns)
        return {};
    const Offset offset = bestOffset(*zone);
    if (hitsAt(*zone, offset) < kFewestHits)
        return {};
    std::vector<LedOfKey> joined;
    for (int row = 0; row < kRows; ++row)
        align(ledsOfRow(*zone, row, offset), keysOfRow(*zone, row, offset), joined);
    // A matrix may name an LED twice.
    std::vector<bool> isTaken(controller.litLeds());
    std::erase_if(joined, [&](const LedOfKey& led) {
        if (led.led >= isTaken.size() || isTaken[led.led])
            return true;
        isTaken[led.led] = true;
        return false;
    });
    return joined;
}

} // namespace glimra::keyboards::openrgb
