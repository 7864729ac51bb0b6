#pragma once

#include "keyboards/openrgb/hand_placing.h"
#include "platform/user_defaults.h"

namespace glimra::desktop {

/// What the player has told about the lights of keyboards, as the settings keep it: for each keyboard the
/// pairs of a light's number and a key's code. What cannot be understood is left out.
keyboards::openrgb::HandPlacing::AllPlaces loadLightPlaces(const platform::UserDefaults& settings);
void storeLightPlaces(platform::UserDefaults& settings, const std::string& board,
                      const keyboards::openrgb::HandPlacing::Places& places);

} // namespace glimra::desktop
