#pragma once

#include <string_view>

namespace glimra::tools {

/// The demonstration, in the painter's own commands. A token takes effect up to half a second after it was
/// sent, so a stage is named only once the keyboard certainly shows it, and stands long enough for a picture.
/// The combat pulse holds back most of what comes while it runs: the fight has to end before anything else.
inline constexpr std::string_view kDemo = R"(
    wait 300
    stage rest
    wait 800

    # A fight: the edge of the keyboard pulses red, faster when hurt, slower when healed.
    send C
    wait 600
    stage combat
    wait 1000
    send x
    wait 900
    send w
    wait 600
    send O
    wait 800

    # Death: keys here and there glow until life comes back.
    send D
    wait 600
    stage dead
    wait 1200
    send U
    wait 700

    # A whisper: Enter flashes until the next message.
    send I
    wait 600
    stage whisper
    wait 1800
    send i
    wait 600
)";

} // namespace glimra::tools
