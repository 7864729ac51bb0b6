#pragma once

#include <string_view>

namespace glimra::platform {

/// A setting with a single value.
template <class Value>
struct Setting {
    std::string_view key;
    /// Used while no usable value is stored.
    Value factory;
    /// Written to the system log when the stored value cannot be used.
    std::string_view complaint;
};

/// All settings with a single value, except those that exist once per profile (names included) or per action
/// key.
namespace settings {

inline constexpr std::string_view kNoInstead = "is neither yes nor no; no stands in for it.";
inline constexpr std::string_view kIgnoredText = "is no text and is ignored.";
inline constexpr std::string_view kIgnoredPlace = "lies on no screen and is ignored.";

// The strip on the screen; both 0 before the first calibration.
inline constexpr Setting<double> kScanWidth{"scanWidth", 0.0, kIgnoredPlace};
inline constexpr Setting<double> kScanOffset{"scanOffset", 0.0, kIgnoredPlace};

/// Real pixels for a point, 1 or 2: a strip that is too wide is read at half its width.
inline constexpr Setting<double> kScanPixelsPerPoint{"scanPixelsPerPoint", 1.0,
                                                     "is neither 1 nor 2; 1 stands in for it."};

// Light.
inline constexpr Setting<double> kBlinkTime{"blinkTimePref", 1.0,
                                            "is no number; one second stands in for it."};
inline constexpr Setting<bool> kSingleColorMode{"singleColorMode", false, kNoInstead};
inline constexpr Setting<bool> kAutoToggleProfile{"autoToggleProfile", false, kNoInstead};
inline constexpr Setting<bool> kCombatChatWarning{"combatChatWarning", false, kNoInstead};
inline constexpr Setting<bool> kEndStaleEffects{"endStaleEffects", false, kNoInstead};
/// The desktop stores this at its first start. Replay scripts do not get it, so there effects stay until
/// something ends them.
inline constexpr bool kEndStaleEffectsAtFirst = true;
inline constexpr Setting<bool> kFastResponse{"fastResponse", false, kNoInstead};
inline constexpr Setting<std::string_view> kLedDriver{"ledDriver", "auto",
                                                      "names no keyboard driver; auto stands in for it."};

// Launching.
inline constexpr Setting<std::string_view> kWowAppName{"WowAppName", "World of Warcraft", kIgnoredText};
inline constexpr Setting<std::string_view> kWowClassicAppName{"WowClassicAppName",
                                                              "World of Warcraft Classic", kIgnoredText};
inline constexpr Setting<std::string_view> kBNAppName{"BNAppName", "Battle.net", kIgnoredText};
inline constexpr Setting<std::string_view> kAutorunMenuName{"AutorunMenuName", "", kIgnoredText};
inline constexpr Setting<std::string_view> kAutorunName{"AutorunName", "", kIgnoredText};

// Windows.
inline constexpr Setting<bool> kFirstStepsDone{"firstStepsDone", false, kNoInstead};
inline constexpr Setting<bool> kDemonstrationPlayed{"demonstrationPlayed", false, kNoInstead};
inline constexpr Setting<bool> kKeepInTray{"keepInTray", false, kNoInstead};
inline constexpr Setting<std::string_view> kAppearance{
    "appearance", "desktop", "is none of desktop, dark and light; desktop stands in for it."};
inline constexpr Setting<bool> kTestPatternShown{"testPatternShown", false, kNoInstead};

} // namespace settings

} // namespace glimra::platform
