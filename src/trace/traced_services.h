#pragma once

#include "platform/system_services.h"
#include "platform/window_system.h"
#include "platform/workspace.h"
#include "trace/trace_writer.h"

namespace glimra::trace {

// Decorators for the platform's services. Each call that leaves the application is written as a line and then
// passed on. Panels and modal sessions get their line when they end, because it contains the answer. A
// decorator may be called on the same threads as the service it wraps.

class TracedChildProcesses final : public platform::ChildProcesses {
public:
    TracedChildProcesses(platform::ChildProcesses& processes, TraceWriter& writer);
    void start(const std::string& path, const std::vector<std::string>& arguments) override;

private:
    platform::ChildProcesses& m_processes;
    TraceWriter& m_writer;
};

class TracedSounds final : public platform::Sounds {
public:
    TracedSounds(platform::Sounds& sounds, TraceWriter& writer);
    void play(std::string_view name) override;

private:
    platform::Sounds& m_sounds;
    TraceWriter& m_writer;
};

class TracedSystemLog final : public platform::SystemLog {
public:
    TracedSystemLog(platform::SystemLog& systemLog, TraceWriter& writer);
    void write(std::string_view line) override;

private:
    platform::SystemLog& m_systemLog;
    TraceWriter& m_writer;
};

class TracedProcessActivity final : public platform::ProcessActivity {
public:
    TracedProcessActivity(platform::ProcessActivity& activity, TraceWriter& writer);
    void begin(std::string_view reason) override;
    void end(std::string_view reason) override;

private:
    platform::ProcessActivity& m_activity;
    TraceWriter& m_writer;
};

class TracedWorkspace final : public platform::Workspace {
public:
    TracedWorkspace(platform::Workspace& workspace, TraceWriter& writer);
    std::optional<platform::RunningApplication> frontmostApplication() const override;
    void observeFront(std::function<void()> changed) override {
        m_workspace.observeFront(std::move(changed));
    }
    void observeSleep(std::function<void()> aboutToSleep, std::function<void()> screensDidWake) override;
    bool openUrl(const std::string& address) override;

private:
    platform::Workspace& m_workspace;
    TraceWriter& m_writer;
};

class TracedWindowSystem final : public platform::WindowSystem {
public:
    /// A window's name in a line.
    using WindowName = std::function<std::string(const platform::Window* window)>;

    TracedWindowSystem(platform::WindowSystem& windowSystem, TraceWriter& writer, WindowName nameOfWindow);
    void restoreFrame(std::string_view frameName) override;
    void saveFrame(std::string_view frameName) override;
    int runModal(platform::Window& window) override;
    void stopModal(int code) override;
    std::optional<std::string> runSavePanel(const platform::SavePanel& panel) override;
    std::optional<std::string> runOpenPanel(const platform::OpenPanel& panel) override;
    void runAlert(const platform::Alert& alert) override;
    void showSheet(const platform::Alert& alert) override;
    void hideColorPanel() override;
    std::optional<std::string> documentsFolder() override;

private:
    platform::WindowSystem& m_windowSystem;
    TraceWriter& m_writer;
    WindowName m_nameOfWindow;
};

} // namespace glimra::trace
