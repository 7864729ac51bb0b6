#pragma once

#include "desktop/services/background_worker.h"
#include "platform/system_services.h"

#include <functional>
#include <string>

namespace glimra::desktop {

/// Starts programs, and stands in for the two that no Linux has:
///
/// - /usr/bin/say with one argument speaks it through speech-dispatcher, if that is installed;
/// - /usr/bin/osascript with the argument that activates an application brings its window to the front, or
///   starts the application whose desktop entry has that name.
///
/// Every other path is started as it is. `start` hands over to a worker and returns.
class LinuxCommands final : public platform::ChildProcesses {
public:
    /// Brings the window of an application to the front; false when there is none. Main thread.
    using RaiseWindow = std::function<bool(const std::string& name)>;

    /// Takes a sentence for the user. Any thread.
    using Tell = std::function<void(const std::string& sentence)>;

    /// What is spoken goes to `voice`, what is started to a worker of its own. What cannot be started is
    /// told.
    LinuxCommands(BackgroundWorker& voice, RaiseWindow raiseWindow, Tell tell);

    void start(const std::string& path, const std::vector<std::string>& arguments) override;

private:
    void speak(const std::string& text);
    void activate(const std::string& argument);
    void launch(const std::string& path, const std::vector<std::string>& arguments);

    BackgroundWorker& m_voice;
    RaiseWindow m_raiseWindow;
    Tell m_tell;
    /// More than anyone can ask for in the time that a start takes.
    BackgroundWorker m_launches{8};
};

} // namespace glimra::desktop
