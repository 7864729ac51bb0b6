#pragma once

#include <string_view>

namespace glimra::tools {

/// The demonstration, in the painter's own commands. A token takes effect up to half a second after it was
/// sent, so a stage is named only once the keyboard certainly shows it, and stands long enough for a picture.
/// The combat pulse holds back most of what comes while it runs: the fight has to end before anything else.
inline constexpr std::string_view kDemo = R"(
    # At rest the keyboard has the colours of the first profile.
    send 1
    wait 600
    stage rest
    wait 500

    # A fight: the edge of the keyboard pulses red.
    send C
    wait 600
    stage combat
    wait 500

    # Abilities are used and their keys go dark; two are ready again soon, and blink.
    send `p [p
    wait 600
    stage cooldown
    wait 500
    send `@
    wait 300
    stage ready
    wait 900

    # Low health: the pulse races. Then the fight is over, and so are the cooldowns.
    send z
    wait 500
    stage low-health
    wait 500
    send `\x01 [\x01 O w
    wait 600

    # Death: keys here and there glow; then a ghost walks, with Esc alone lit; then life.
    send D
    wait 600
    stage dead
    wait 700
    send U
    wait 400
    send W
    wait 1000
    stage ghost
    wait 500
    send V
    wait 800
    send 1
    wait 500

    # A whisper: Enter flashes until the next message.
    send I
    wait 600
    stage whisper
    wait 1000
    send i
    wait 600

    # A new level: a rainbow rolls down the keyboard.
    send J
    stage rainbow
    wait 1700
)";

} // namespace glimra::tools
