#include "screenlink/demonstration.h"

#include <algorithm>
#include <functional>
#include <iterator>

namespace glimra::screenlink {

namespace {

using namespace std::chrono_literals;

// The combat pulse holds back most of what comes while it runs: the fight has to end before anything else.
constexpr DemonstrationStep kSteps[]{
    // At rest the keyboard has the colours of the first profile.
    {"1", 600ms, "rest", 500ms},
    // A fight: the edge of the keyboard pulses red.
    {"C", 600ms, "combat", 500ms},
    // Abilities are used and their keys go dark; two are ready again soon, and blink.
    {"`p"},
    {"[p", 600ms, "cooldown", 500ms},
    {"`@", 300ms, "ready", 900ms},
    // Low health: the pulse races. Then the fight is over, and so are the cooldowns.
    {"z", 500ms, "low-health", 500ms},
    {"`\x01"},
    {"[\x01"},
    {"O"},
    {"w", 600ms},
    // Death: keys here and there glow; then a ghost walks, with Esc alone lit; then life.
    {"D", 600ms, "dead", 700ms},
    {"U", 400ms},
    {"W", 1000ms, "ghost", 500ms},
    {"V", 800ms},
    {"1", 500ms},
    // A whisper: Enter flashes until the next message.
    {"I", 600ms, "whisper", 1000ms},
    {"i", 600ms},
    // A new level: a rainbow rolls down the keyboard.
    {"J", 0ms, "rainbow", 1700ms},
};

/// The row in which `frame` stands at the positions that are sampled.
platform::Image imageOf(const StripFrame& frame, double width) {
    platform::Image image;
    image.pixels.resize(static_cast<std::size_t>(std::max(width, 1.0)) + 1);
    const PixelOffsets offsets = updatePixelOffsets(width);
    for (std::size_t cell = 0; cell < kCellCount; ++cell)
        if (const auto at = static_cast<std::size_t>(offsets[cell]); at < image.pixels.size())
            image.pixels[at] = frame[cell];
    return image;
}

/// The cells, if they are a frame that an add-on may have painted.
std::optional<Cells> frameIn(const std::optional<platform::Image>& image, double width) {
    std::optional<Cells> cells = image ? sampleCells(image->view(), updatePixelOffsets(width)) : std::nullopt;
    if (cells &&
        (!decodeFrame(*cells) || std::ranges::adjacent_find(*cells, std::not_equal_to<>()) == cells->end()))
        cells.reset();
    return cells;
}

} // namespace

std::span<const DemonstrationStep> demonstrationSteps() {
    return kSteps;
}

DemonstrationCapture::DemonstrationCapture(platform::ScreenCapture& screen, platform::RunLoop& runLoop)
    : m_screen(screen),
      m_runLoop(runLoop) {
}

void DemonstrationCapture::stop() {
    if (m_run.exchange(0) != 0)
        over.emit(End::Stopped);
}

int DemonstrationCapture::activeDisplayCount() {
    return std::max(m_screen.activeDisplayCount(), isPlaying() ? 1 : 0);
}

std::optional<platform::Image> DemonstrationCapture::capture(const platform::ScreenRect& rect) {
    std::optional<platform::Image> image = m_screen.capture(rect);
    const int run = m_run;
    if (run == 0)
        return image;
    const std::optional<Cells> onScreen = frameIn(image, rect.width);
    if (run != m_begunRun) {
        m_begunRun = run;
        begin(onScreen);
    }
    // A picture at the edge of the screen may look like a frame, but it stands still.
    if (onScreen && onScreen != m_onScreen) {
        end(run, End::RealStrip);
        return image;
    }
    const std::optional<StripFrame> frame = nextFrame();
    if (!frame) {
        end(run, End::Played);
        return image;
    }
    return imageOf(*frame, rect.width);
}

void DemonstrationCapture::begin(const std::optional<Cells>& onScreen) {
    m_onScreen = onScreen;
    m_step = 0;
    m_phase = Phase::Announce;
}

std::optional<StripFrame> DemonstrationCapture::nextFrame() {
    if (m_phase == Phase::Wait && m_runLoop.now() >= m_waitEnds) {
        m_phase = Phase::Announce;
        ++m_step;
    }
    if (m_step == std::size(kSteps))
        return std::nullopt;
    if (m_phase == Phase::Wait)
        return kDarkFrame;
    // Each frame is shown for just one reading, so none is lost however slow the machine is.
    const DemonstrationStep& step = kSteps[m_step];
    const TokenFrames frames = encodeToken(*tokenOf(step.token));
    if (m_phase == Phase::Announce) {
        m_phase = Phase::Confirm;
        return frames.announce;
    }
    m_phase = Phase::Wait;
    m_waitEnds = m_runLoop.now() + step.settles + step.stands;
    return frames.confirm;
}

void DemonstrationCapture::end(int run, End how) {
    // The main thread may have stopped it meanwhile, or begun anew.
    if (m_run.compare_exchange_strong(run, 0))
        m_runLoop.post([this, how] { over.emit(how); });
}

} // namespace glimra::screenlink
