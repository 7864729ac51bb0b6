#include "keyboards/openrgb/hand_placing.h"

#include "platform/hexadecimal.h"

#include <algorithm>
#include <array>
#include <utility>

namespace glimra::keyboards::openrgb {

std::string HandPlacing::idOf(const Controller& controller) {
    // FNV-1a with 64 bits.
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char c : controller.name + '\0' + controller.serial)
        hash = (hash ^ static_cast<std::uint8_t>(c)) * 0x100000001B3;
    std::array<std::uint8_t, 8> bytes{};
    for (std::uint8_t& byte : bytes) {
        byte = static_cast<std::uint8_t>(hash >> 56);
        hash <<= 8;
    }
    return platform::hexadecimal(bytes);
}

HandPlacing::Places HandPlacing::placesOf(const std::string& id) const {
    return m_state.with([&](const State& state) {
        const auto found = state.places.find(id);
        return found != state.places.end() ? found->second : Places();
    });
}

void HandPlacing::place(const std::string& id, Places places) {
    m_state.with([&](State& state) { state.places[id] = std::move(places); });
}

void HandPlacing::lightOnly(std::optional<std::size_t> led) {
    m_state.with([&](State& state) { state.onlyLed = led; });
}

void HandPlacing::setAll(AllPlaces places) {
    m_state.with([&](State& state) { state.places = std::move(places); });
}

void HandPlacing::setBoard(std::optional<Board> board) {
    m_state.with([&](State& state) { state.board = std::move(board); });
}

HandPlacing::Places HandPlacing::corrected(Places found, const Controller& controller) const {
    const Places told = placesOf(idOf(controller));
    std::erase_if(found,
                  [&](const LedOfKey& led) { return std::ranges::count(told, led.led, &LedOfKey::led) > 0; });
    std::ranges::copy_if(told, std::back_inserter(found),
                         [&](const LedOfKey& led) { return led.led < controller.litLeds(); });
    return found;
}

} // namespace glimra::keyboards::openrgb
