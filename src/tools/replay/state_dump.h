#pragma once

#include "app/app_delegate.h"
#include "platform/user_defaults.h"

#include <nlohmann/json_fwd.hpp>

namespace glimra::tools {

// The application's state as JSON values, to look at and to compare. Colours are [red, green, blue].

/// The delegate's plain values under their own names.
nlohmann::ordered_json dumpState(const app::State& state);
/// All stored values under their keys; data that is no colour as hexadecimal digits.
nlohmann::ordered_json dumpDefaults(const platform::UserDefaults& defaults);
/// What each outlet shows, under its name; outlets that are no controls are left out.
nlohmann::ordered_json dumpControls(app::Outlets& outlets);
/// A profile's prepared bitmap as hexadecimal digits; `profile` is 0 to 9.
nlohmann::ordered_json dumpBitmap(const app::State& state, std::size_t profile);

} // namespace glimra::tools
