#pragma once

#include "platform/controls.h"
#include "platform/run_loop.h"
#include "platform/screen_capture.h"
#include "screenlink/strip_decoder.h"

#include <atomic>
#include <string_view>

namespace glimra::screenlink {

/// One token of the demonstration, and what follows it.
struct DemonstrationStep {
    std::string_view token;
    /// Until the keyboard certainly shows it: a token takes effect up to half a second after it was sent.
    platform::Duration settles{};
    /// What the keyboard shows then; empty where that is not worth a picture.
    std::string_view stage{};
    /// How long that stands.
    platform::Duration stands{};
};

/// An evening in the game, in a quarter of a minute. It begins and ends with profile 1 at rest.
std::span<const DemonstrationStep> demonstrationSteps();

/// The reader's capture, which can show the strip of the demonstration in place of the screen's. All that
/// comes after it (decoder, queue, lights, status, a recording) takes it for the game's, so no display and no
/// game is needed. It stops by itself as soon as the real strip shows a frame.
///
/// `capture` and `activeDisplayCount` are for the reader's thread, all else is for the main thread.
class DemonstrationCapture final : public platform::ScreenCapture {
public:
    enum class End { Played, Stopped, RealStrip };

    /// Both outlive it.
    DemonstrationCapture(platform::ScreenCapture& screen, platform::RunLoop& runLoop);

    /// Plays from the beginning.
    void play() { m_run = ++m_runs; }
    /// Does nothing when it does not play.
    void stop();
    bool isPlaying() const { return m_run != 0; }
    /// It plays no more.
    platform::Signal<End> over;

    int activeDisplayCount() override;
    std::optional<platform::Image> capture(const platform::ScreenRect& rect) override;
    double backingScaleFactor() override { return m_screen.backingScaleFactor(); }

private:
    enum class Phase { Announce, Confirm, Wait };

    void begin(const std::optional<Cells>& onScreen);
    std::optional<StripFrame> nextFrame();
    void end(int run, End how);

    platform::ScreenCapture& m_screen;
    platform::RunLoop& m_runLoop;
    int m_runs = 0;
    /// Which playing goes on; 0 when none does. Any thread.
    std::atomic<int> m_run = 0;

    // The reader's.
    int m_begunRun = 0;
    std::size_t m_step = 0;
    Phase m_phase = Phase::Announce;
    platform::Time m_waitEnds{};
    /// What the screen showed where the strip would be, when the playing began.
    std::optional<Cells> m_onScreen;
};

} // namespace glimra::screenlink
