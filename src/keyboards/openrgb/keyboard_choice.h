#pragma once

#include "keyboards/openrgb/key_names.h"
#include "keyboards/openrgb/session.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace glimra::keyboards::openrgb {

/// A device of the server that can be lit.
struct Keyboard {
    std::uint32_t device = 0;
    Controller controller;
    std::vector<LedOfKey> leds;
    /// How many keys have a light of their own.
    std::size_t keyCount = 0;
    std::size_t perLedMode = 0;
};

/// How much a device is wanted; 0 when it is not.
using Rank = std::function<int(const Controller&)>;

/// The device that is wanted most; among equals, the one with the most keys. None when there is none, or when
/// the conversation with the server has ended.
std::optional<Keyboard> chooseKeyboard(Session& session, const Rank& rank);

/// Ranks keyboards, or devices with this name or a part of it.
Rank rankByName(const std::string& wanted);
/// Ranks nothing but this device, wherever it is in the list.
Rank rankSame(const Controller& controller);

/// A text that is the same for a device wherever it is in the list, and differs from that of other devices.
std::string identityOf(const Controller& controller);

/// A text of the server, cut and cleaned so that it can stand in a line of the log. What is no UTF-8 becomes
/// question marks.
std::string printable(std::string_view text);

} // namespace glimra::keyboards::openrgb
