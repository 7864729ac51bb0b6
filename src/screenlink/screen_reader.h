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

/// The flags by which the main thread steers the reader.
struct ReaderFlags {
    /// Set while the screens sleep: nothing is captured then.
    std::atomic<bool> suspendScreenReads = false;
    /// Cleared when the user quits: the loop ends then.
    std::atomic<bool> keepTheScannerRunning = true;
    /// The player wants the light to change with the picture.
    std::atomic<bool> fastResponse = false;
};

/// Reads the strip about twenty times a second, or sixty where the player wants a fast response, and puts the
/// tokens into the message queue. Its loop runs on a thread of its own, which changes only the reader's own
/// state and the queue; what concerns the log or the application is posted to the main thread.
class ScreenReader final : public platform::LoopBody {
public:
    ScreenReader(platform::ScreenCapture& capture, platform::RunLoop& runLoop, platform::MessageLog& log,
                 platform::Application& application, MessageQueue& queue, const SharedStripGeometry& geometry,
                 const ReaderFlags& flags);

    /// Starts the loop on `thread`. It ends when `keepTheScannerRunning` is cleared, and then answers the
    /// pending request to terminate. Main thread.
    void recordColorsThread(platform::WorkerLoop& thread);

    /// Debug lines were not wanted until now: what has been told in vain is told again.
    void debugModeBegins() { m_reportedMissingImage = false; }

    /// How many frames that look like the add-on's were read so far. Any thread.
    std::uint64_t validFrames() const { return m_validFrames; }

private:
    void pass() override;
    platform::Duration pause() const override;
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
    /// Passes since the last valid frame, or since a fast response was first wanted.
    int m_passesInVain = 0;
    std::atomic<std::uint64_t> m_validFrames = 0;
    /// The log already says that there is no display. Set on the main thread, cleared on the reader's.
    std::atomic<bool> showedDisplayErrorMsg = false;
    /// The log was told that there is no image. Any thread.
    std::atomic<bool> m_reportedMissingImage = false;
};

} // namespace glimra::screenlink
