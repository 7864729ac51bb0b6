#pragma once

#include "recording/script_recorder.h"
#include "screenlink/strip_decoder.h"

#include <functional>

namespace glimra::recording {

// Decorators for the parts of a platform that deliver input. Each reports the input to the recorder and
// passes it on.

/// The reader's capture. It decodes each captured row itself, so that only valid frames of the strip are
/// recorded.
class RecordedCapture final : public platform::ScreenCapture {
public:
    /// Frames are reported to `recorder` on the main thread, through `runLoop`.
    RecordedCapture(platform::ScreenCapture& capture, platform::RunLoop& runLoop, ScriptRecorder& recorder);

    int activeDisplayCount() override { return m_capture.activeDisplayCount(); }
    double backingScaleFactor() override { return m_capture.backingScaleFactor(); }
    std::optional<platform::Image> capture(const platform::ScreenRect& rect) override;

private:
    platform::ScreenCapture& m_capture;
    platform::RunLoop& m_runLoop;
    ScriptRecorder& m_recorder;
    double m_width = 0.0;
    screenlink::PixelOffsets m_offsets{};
    std::optional<screenlink::Cells> m_last;
};

class RecordedWorkspace final : public platform::Workspace {
public:
    RecordedWorkspace(platform::Workspace& workspace, ScriptRecorder& recorder);

    /// Records the application in front when it differs from the last call's. The application notices a
    /// change only when it asks, so the times agree.
    std::optional<platform::RunningApplication> frontmostApplication() const override;
    void observeFront(std::function<void()> changed) override {
        m_workspace.observeFront(std::move(changed));
    }
    void observeSleep(std::function<void()> aboutToSleep, std::function<void()> screensDidWake) override;
    bool openUrl(const std::string& address) override { return m_workspace.openUrl(address); }

private:
    platform::Workspace& m_workspace;
    ScriptRecorder& m_recorder;
    mutable std::optional<platform::RunningApplication> m_last;
};

class RecordedWindowSystem final : public platform::WindowSystem {
public:
    RecordedWindowSystem(platform::WindowSystem& windows, ScriptRecorder& recorder);

    /// Gives access to the pop-ups whose choice is part of an answer. They exist only once the application
    /// has been created.
    void follow(app::Outlets& outlets) { m_outlets = &outlets; }

    void restoreFrame(std::string_view frameName) override { m_windows.restoreFrame(frameName); }
    void saveFrame(std::string_view frameName) override { m_windows.saveFrame(frameName); }
    int runModal(platform::Window& window) override;
    void stopModal(int code) override { m_windows.stopModal(code); }
    // A panel's path is private to the user and is not recorded: in the script, panels are cancelled.
    std::optional<std::string> runSavePanel(const platform::SavePanel& panel) override {
        return m_windows.runSavePanel(panel);
    }
    std::optional<std::string> runOpenPanel(const platform::OpenPanel& panel) override {
        return m_windows.runOpenPanel(panel);
    }
    void runAlert(const platform::Alert& alert) override { m_windows.runAlert(alert); }
    void showSheet(const platform::Alert& alert) override { m_windows.showSheet(alert); }
    void hideColorPanel() override { m_windows.hideColorPanel(); }
    std::optional<std::string> documentsFolder() override { return m_windows.documentsFolder(); }

private:
    platform::WindowSystem& m_windows;
    ScriptRecorder& m_recorder;
    app::Outlets* m_outlets = nullptr;
};

/// A platform whose input is recorded.
class RecordedPlatform {
public:
    /// `recorder` and all that `recorded` refers to must outlive it.
    RecordedPlatform(const platform::Platform& recorded, ScriptRecorder& recorder);

    const platform::Platform& platform() const { return m_platform; }
    void follow(app::Outlets& outlets) { m_windowSystem.follow(outlets); }

private:
    RecordedCapture m_readerCapture;
    RecordedWorkspace m_workspace;
    RecordedWindowSystem m_windowSystem;
    platform::Platform m_platform;
};

} // namespace glimra::recording
