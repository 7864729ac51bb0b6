#pragma once

#include "events/animation.h"
#include "lighting/lighting_output.h"
#include "platform/led_driver.h"
#include "platform/run_loop.h"
#include "platform/system_services.h"

namespace glimra::events {

/// A colour by hue, saturation and brightness, 0 to 1 each.
struct HsbColor {
    double hue;
    double saturation;
    double brightness;
};

/// Plays animations, and starts and ends the effects of the whole keyboard. It keeps no state; what it leaves
/// on the keyboard stays until something else is shown. Main thread.
class Effects {
public:
    Effects(platform::RunLoop& runLoop, platform::LedDriver& driver, platform::RandomNumbers& random,
            lighting::LightingOutput& lighting);

    /// Plays an animation over a profile's bitmap, or its form for single-colour mode, and returns when it is
    /// over. The run loop goes on meanwhile, so that another animation may begin before this one ends; the
    /// keyboard then shows the steps of both as their times come. Returns false when the application has
    /// terminated inside.
    [[nodiscard]] bool play(const Animation& animation, const lighting::LedBitmap& profile,
                            bool singleColorMode);

    /// Every key pulses around a colour, each row at its own pace, until `stopAllKeyEffects`.
    void shadowGlow(const HsbColor& color);

    /// Stops flashes and pulses on the 104 keys of the LED bitmap; in single-colour mode also those of whole
    /// devices.
    void stopAllKeyEffects(bool singleColorMode);

private:
    platform::RunLoop& m_runLoop;
    platform::LedDriver& m_driver;
    platform::RandomNumbers& m_random;
    lighting::LightingOutput& m_lighting;
};

} // namespace glimra::events
