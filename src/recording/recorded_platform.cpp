#include "recording/recorded_platform.h"

namespace glimra::recording {

RecordedCapture::RecordedCapture(platform::ScreenCapture& capture, platform::RunLoop& runLoop,
                                 ScriptRecorder& recorder)
    : m_capture(capture),
      m_runLoop(runLoop),
      m_recorder(recorder) {
}

std::optional<platform::Image> RecordedCapture::capture(const platform::ScreenRect& rect) {
    std::optional<platform::Image> image = m_capture.capture(rect);
    if (rect.width != m_width) {
        m_width = rect.width;
        m_offsets = screenlink::updatePixelOffsets(m_width);
    }
    std::optional<screenlink::Cells> cells =
        image ? screenlink::sampleCells(image->view(), m_offsets) : std::nullopt;
    if (cells && !screenlink::decodeFrame(*cells))
        cells.reset();
    if (cells != m_last) {
        m_last = cells;
        m_runLoop.post([this, cells, time = m_runLoop.now()] { m_recorder.frame(cells, time); });
    }
    return image;
}

RecordedWorkspace::RecordedWorkspace(platform::Workspace& workspace, ScriptRecorder& recorder)
    : m_workspace(workspace),
      m_recorder(recorder) {
}

std::optional<platform::RunningApplication> RecordedWorkspace::frontmostApplication() const {
    std::optional<platform::RunningApplication> front = m_workspace.frontmostApplication();
    if (front != m_last) {
        m_last = front;
        m_recorder.front(front);
    }
    return front;
}

void RecordedWorkspace::observeSleep(std::function<void()> aboutToSleep,
                                     std::function<void()> screensDidWake) {
    m_workspace.observeSleep(
        [this, aboutToSleep = std::move(aboutToSleep)] {
            m_recorder.sleep();
            aboutToSleep();
        },
        [this, screensDidWake = std::move(screensDidWake)] {
            m_recorder.wake();
            screensDidWake();
        });
}

RecordedWindowSystem::RecordedWindowSystem(platform::WindowSystem& windows, ScriptRecorder& recorder)
    : m_windows(windows),
      m_recorder(recorder) {
}

int RecordedWindowSystem::runModal(platform::Window& window) {
    m_recorder.beginModal();
    const int code = m_windows.runModal(window);
    std::string settings;
    if (m_outlets != nullptr && &window == &m_outlets->copyProfileDialog)
        settings = " fromProfileMenu=" + std::to_string(m_outlets->fromProfileMenu.selected.get()) +
                   " toProfileMenu=" + std::to_string(m_outlets->toProfileMenu.selected.get());
    m_recorder.endModal(code, settings);
    return code;
}

RecordedPlatform::RecordedPlatform(const platform::Platform& recorded, ScriptRecorder& recorder)
    : m_readerCapture(recorded.readerCapture, recorded.runLoop, recorder),
      m_workspace(recorded.workspace, recorder),
      m_windowSystem(recorded.windowSystem, recorder),
      m_platform(recorded) {
    m_platform.readerCapture = m_readerCapture;
    m_platform.workspace = m_workspace;
    m_platform.windowSystem = m_windowSystem;
}

} // namespace glimra::recording
