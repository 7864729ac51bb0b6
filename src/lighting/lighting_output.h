#pragma once

#include "lighting/lighting_state.h"
#include "platform/led_driver.h"
#include "platform/system_services.h"

namespace glimra::lighting {

/// Bits for `LogiLedSetTargetDevice`.
inline constexpr int kPerKeyDevices = 4;
inline constexpr int kAllDevices = 7;

/// Lights the keyboard, for all who do so: profiles, effects and cooldowns. Main thread.
class LightingOutput {
public:
    LightingOutput(platform::LedDriver& driver, platform::RandomNumbers& random, const LightingState& state);

    /// Puts a profile (1 to 9) on the keyboard: its bitmap, then the keys that the bitmap does not cover.
    void showProfileLighting(int profile);
    /// Lights the whole keyboard in one colour.
    void setAllKeysColor(const Color& color);
    /// Lights one key, by the driver's name for it.
    void setKeyColor(KeyName keyName, const Color& color);

    /// The glow of death: two groups of keys that pulse softly, each key at its own pace, until stopped.
    void startScatterPulse();
    void stopScatterPulse();

private:
    /// Lights one key in its colour of the profile in memory. `code` and `keyName` name the same key.
    void setKeyToProfileColor(KeyCode code, KeyName keyName);

    platform::LedDriver& m_driver;
    platform::RandomNumbers& m_random;
    const LightingState& m_state;
};

} // namespace glimra::lighting
