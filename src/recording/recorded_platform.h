#pragma once

#include "recording/script_recorder.h"
#include "screenlink/strip_decoder.h"

#include <functional>

namespace glimra::recording {

// The parts of a platform by which something comes in, each of which tells the recorder of it and hands it
// on.

/// The reader's capture: what it reads is decoded once more, so that only frames of the strip are told.
class RecordedCapture final : public platform::ScreenCapture {
public:
    /// Frames are told through `runLoop`, on the main thread.
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

    /// Tells what is new since it was last asked for: that is when the application takes notice.
    std::optional<platform::RunningApplication> frontmostApplication() const override;
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

    /// Where the pop-ups are whose choice is part of an answer; not before the application is made.
    void follow(app::Outlets& outlets) { m_outlets = &outlets; }

    void restoreFrame(std::string_view frameName) override { m_windows.restoreFrame(frameName); }
    void saveFrame(std::string_view frameName) override { m_windows.saveFrame(frameName); }
    int runModal(platform::Window& window) override;
    void stopModal(int code) override { m_windows.stopModal(code); }
    // A panel's path stays the user's own: the script's panels are cancelled.
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

/// A platform of which all that comes in is recorded.
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
