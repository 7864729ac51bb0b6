#pragma once

#include "platform/application.h"
#include "platform/message_log.h"
#include "platform/run_loop.h"
#include "platform/screen_capture.h"
#include "platform/worker_loop.h"
#include "screenlink/message_queue.h"
#include "screenlink/strip_decoder.h"

#include <atomic>
#include <cstdint>

namespace glimra::screenlink {

/// The two flags by which the main thread steers the reader.
struct ReaderFlags {
    /// The screens sleep: neither capture nor decode.
    std::atomic<bool> suspendScreenReads = false;
    /// Cleared when the user quits.
    std::atomic<bool> keepTheScannerRunning = true;
};

/// Watches the strip about twenty times a second and hands what it reads to the message queue. Its loop runs
/// on a thread of its own, and writes nothing but its own state and the queue; what it has to say it posts.
class ScreenReader final : public platform::LoopBody {
public:
    ScreenReader(platform::ScreenCapture& capture, platform::RunLoop& runLoop, platform::MessageLog& log,
                 platform::Application& application, MessageQueue& queue, const SharedStripGeometry& geometry,
                 const ReaderFlags& flags);

    /// Starts the loop on `thread`. It ends when `keepTheScannerRunning` is cleared, and then answers the
    /// pending request to terminate. Main thread.
    void recordColorsThread(platform::WorkerLoop& thread);

    /// How many frames were read so far that look like the strip. Any thread.
    std::uint64_t validFrames() const { return m_validFrames; }

private:
    void pass() override;
    bool goesOn() const override;
    void left() override;

    /// One cycle: capture, decode, hand over.
    void recordColors();
    void reportMissingDisplay();
    void reportMissingImage();

    platform::ScreenCapture& m_capture;
    platform::RunLoop& m_runLoop;
    platform::MessageLog& m_log;
    platform::Application& m_application;
    MessageQueue& m_queue;
    const SharedStripGeometry& m_geometry;
    const ReaderFlags& m_flags;

    TokenAssembler m_assembler;
    std::atomic<std::uint64_t> m_validFrames = 0;
    /// The notice for the current outage of displays stands in the log. Set on the main thread.
    std::atomic<bool> showedDisplayErrorMsg = false;
    /// The current outage of images was reported. Reader's thread.
    bool m_reportedMissingImage = false;
};

} // namespace glimra::screenlink
