#include "trace/traced_services.h"

#include <utility>

namespace glimra::trace {

TracedChildProcesses::TracedChildProcesses(platform::ChildProcesses& processes, TraceWriter& writer)
    : m_processes(processes),
      m_writer(writer) {
}

void TracedChildProcesses::start(const std::string& path, const std::vector<std::string>& arguments) {
    m_writer.process(path, arguments);
    m_processes.start(path, arguments);
}

TracedSounds::TracedSounds(platform::Sounds& sounds, TraceWriter& writer)
    : m_sounds(sounds),
      m_writer(writer) {
}

void TracedSounds::play(std::string_view name) {
    m_writer.sound(name);
    m_sounds.play(name);
}

TracedSystemLog::TracedSystemLog(platform::SystemLog& systemLog, TraceWriter& writer)
    : m_systemLog(systemLog),
      m_writer(writer) {
}

void TracedSystemLog::write(std::string_view line) {
    m_writer.systemLog(line);
    m_systemLog.write(line);
}

TracedProcessActivity::TracedProcessActivity(platform::ProcessActivity& activity, TraceWriter& writer)
    : m_activity(activity),
      m_writer(writer) {
}

void TracedProcessActivity::begin(std::string_view reason) {
    m_writer.activity(ActivityAction::Begin, reason);
    m_activity.begin(reason);
}

void TracedProcessActivity::end(std::string_view reason) {
    m_writer.activity(ActivityAction::End, reason);
    m_activity.end(reason);
}

TracedWorkspace::TracedWorkspace(platform::Workspace& workspace, TraceWriter& writer)
    : m_workspace(workspace),
      m_writer(writer) {
}

std::optional<platform::RunningApplication> TracedWorkspace::frontmostApplication() const {
    return m_workspace.frontmostApplication();
}

void TracedWorkspace::observeSleep(std::function<void()> aboutToSleep, std::function<void()> screensDidWake) {
    m_workspace.observeSleep(std::move(aboutToSleep), std::move(screensDidWake));
}

bool TracedWorkspace::openUrl(const std::string& address) {
    m_writer.url(address);
    return m_workspace.openUrl(address);
}

TracedWindowSystem::TracedWindowSystem(platform::WindowSystem& windowSystem, TraceWriter& writer,
                                       WindowName nameOfWindow)
    : m_windowSystem(windowSystem),
      m_writer(writer),
      m_nameOfWindow(std::move(nameOfWindow)) {
}

void TracedWindowSystem::restoreFrame(std::string_view frameName) {
    m_writer.frame(FrameAction::Restore, frameName);
    m_windowSystem.restoreFrame(frameName);
}

void TracedWindowSystem::saveFrame(std::string_view frameName) {
    m_writer.frame(FrameAction::Save, frameName);
    m_windowSystem.saveFrame(frameName);
}

int TracedWindowSystem::runModal(platform::Window& window) {
    const int answer = m_windowSystem.runModal(window);
    m_writer.modal(m_nameOfWindow(&window), answer);
    return answer;
}

void TracedWindowSystem::stopModal(int code) {
    m_windowSystem.stopModal(code);
}

std::optional<std::string> TracedWindowSystem::runSavePanel(const platform::SavePanel& panel) {
    std::optional<std::string> path = m_windowSystem.runSavePanel(panel);
    m_writer.panel(PanelKind::Save, path);
    return path;
}

std::optional<std::string> TracedWindowSystem::runOpenPanel(const platform::OpenPanel& panel) {
    std::optional<std::string> path = m_windowSystem.runOpenPanel(panel);
    m_writer.panel(PanelKind::Open, path);
    return path;
}

void TracedWindowSystem::runAlert(const platform::Alert& alert) {
    m_writer.alert(alert);
    m_windowSystem.runAlert(alert);
}

void TracedWindowSystem::showSheet(const platform::Alert& alert) {
    m_writer.alert(alert);
    m_windowSystem.showSheet(alert);
}

void TracedWindowSystem::hideColorPanel() {
    m_windowSystem.hideColorPanel();
}

std::optional<std::string> TracedWindowSystem::documentsFolder() {
    return m_windowSystem.documentsFolder();
}

} // namespace glimra::trace
