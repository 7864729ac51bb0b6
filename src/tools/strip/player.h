#pragma once

#include "tools/strip/strip_painter.h"
#include "tools/strip/strip_script.h"
#include "tools/strip/waiter.h"

#include <chrono>
#include <optional>

namespace glimra::tools {

struct PlayerOptions {
    /// How long each frame of a token stays.
    std::chrono::milliseconds hold{100};
    /// Say on standard output when each confirm frame was painted, as {"t":SECONDS,"token":"..."} a line, in
    /// seconds of the monotonic clock, and when each stage began, with "stage" in the token's place.
    bool timestamps = false;
};

/// Carries out actions on the screen. Throws Stopped and DisplayError.
class Player {
public:
    Player(StripPainter& painter, Waiter& waiter, PlayerOptions options);

    void play(const Action& action);
    /// Leaves the screen as it is until stopped.
    [[noreturn]] void stay();
    /// Waits until a file can be read or has ended.
    void awaitInput(int file);

private:
    void send(const screenlink::Token& token);
    void tell(const Stage& stage);
    void hold(std::chrono::milliseconds time);

    StripPainter& m_painter;
    Waiter& m_waiter;
    PlayerOptions m_options;
};

} // namespace glimra::tools
