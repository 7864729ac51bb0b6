#include "screenlink/screen_reader.h"

#include <algorithm>
#include <functional>

namespace glimra::screenlink {

namespace {

constexpr platform::Duration kPause = std::chrono::milliseconds(50);
constexpr platform::Duration kFastPause = std::chrono::milliseconds(16);
/// After a minute without the add-on it is not worth the power.
constexpr int kFastPasses = std::chrono::minutes(1) / kFastPause;

} // namespace

ScreenReader::ScreenReader(platform::ScreenCapture& capture, platform::RunLoop& runLoop,
                           platform::MessageLog& log, platform::Application& application, MessageQueue& queue,
                           const SharedStripGeometry& geometry, const ReaderFlags& flags)
    : m_capture(capture),
      m_runLoop(runLoop),
      m_log(log),
      m_application(application),
      m_queue(queue),
      m_geometry(geometry),
      m_flags(flags) {
}

void ScreenReader::recordColorsThread(platform::WorkerLoop& thread) {
    thread.start(*this);
}

platform::Duration ScreenReader::pause() const {
    return m_flags.fastResponse && m_passesInVain < kFastPasses ? kFastPause : kPause;
}

void ScreenReader::pass() {
    m_passesInVain = m_flags.fastResponse ? std::min(m_passesInVain + 1, kFastPasses) : 0;
    if (m_flags.suspendScreenReads)
        // What the display server sends meanwhile must be taken, or it piles up for as long as the machine is
        // on.
        static_cast<void>(m_capture.activeDisplayCount());
    else
        recordColors();
}

bool ScreenReader::goesOn() const {
    return m_flags.keepTheScannerRunning;
}

void ScreenReader::left() {
    m_runLoop.post([this] { m_application.replyToApplicationShouldTerminate(true); });
}

void ScreenReader::recordColors() {
    if (m_capture.activeDisplayCount() <= 0) {
        reportMissingDisplay();
        return;
    }
    showedDisplayErrorMsg = false;

    const StripGeometry geometry = m_geometry.copy();
    const std::optional<platform::Image> image = m_capture.capture(geometry.myScanRect);
    const std::optional<Cells> cells =
        image ? sampleCells(image->view(), geometry.pixelOffsets) : std::nullopt;
    if (!cells) {
        reportMissingImage();
        return;
    }
    m_reportedMissingImage = false;

    const std::optional<Frame> frame = decodeFrame(*cells);
    if (!frame)
        return;
    // A line of one bright colour has lit marker cells, too; but in the add-on's frames the cells are never
    // all alike.
    if (std::ranges::adjacent_find(*cells, std::not_equal_to<>()) != cells->end()) {
        ++m_validFrames;
        m_passesInVain = 0;
    }
    if (const std::optional<Token> token = m_assembler.accept(*frame))
        m_queue.appendToMessageQueue(token->text());
}

void ScreenReader::reportMissingDisplay() {
    if (showedDisplayErrorMsg)
        return;
    m_runLoop.post([this] {
        m_log.appendLog("recordColors: No displays available.\n");
        showedDisplayErrorMsg = true;
    });
}

void ScreenReader::reportMissingImage() {
    if (m_reportedMissingImage.exchange(true))
        return;
    m_runLoop.post([this] { m_log.appendDebugLog("recordColors: No image of the whole strip.\n"); });
}

} // namespace glimra::screenlink
