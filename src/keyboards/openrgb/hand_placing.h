#pragma once

#include "keyboards/openrgb/key_names.h"
#include "platform/locked.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace glimra::keyboards::openrgb {

/// What a player has told by hand about the LEDs of keyboards: which key each of them is behind. The device
/// and the dialog in which the player tells it share one object. Any thread.
class HandPlacing {
public:
    /// The places of some LEDs of one keyboard.
    using Places = std::vector<LedOfKey>;
    /// By `idOf` the keyboard.
    using AllPlaces = std::map<std::string, Places, std::less<>>;

    struct Board {
        std::string id;
        std::string name;
        std::vector<std::string> leds;
        /// As they were found without the player.
        Places places;
    };

    /// The same for a keyboard wherever it is plugged in, of hexadecimal digits.
    static std::string idOf(const Controller& controller);

    // For the dialog.

    /// The keyboard that is lit; none when none is.
    std::optional<Board> board() const {
        return m_state.with([](const State& state) { return state.board; });
    }
    Places placesOf(const std::string& id) const;
    /// Takes effect when the keyboard is sent all its colours.
    void place(const std::string& id, Places places);
    /// Every other LED is dark from the next frame on; none to show the colours again.
    void lightOnly(std::optional<std::size_t> led);
    void setAll(AllPlaces places);

    // For the device.

    void setBoard(std::optional<Board> board);
    std::optional<std::size_t> onlyLed() const {
        return m_state.with([](const State& state) { return state.onlyLed; });
    }
    /// `found`, changed as the player has told it.
    Places corrected(Places found, const Controller& controller) const;

private:
    struct State {
        AllPlaces places;
        std::optional<Board> board;
        std::optional<std::size_t> onlyLed;
    };
    platform::Locked<State> m_state;
};

} // namespace glimra::keyboards::openrgb
