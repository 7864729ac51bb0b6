#pragma once

#include "desktop/services/background_worker.h"
#include "platform/system_services.h"

#include <functional>
#include <string>

namespace glimra::desktop {

/// Starts programs, and emulates two that Linux does not have:
///
/// - /usr/bin/say with one argument speaks it through speech-dispatcher, if that is installed;
/// - /usr/bin/osascript with the argument that activates an application brings its window to the front or,
///   without a window, starts the application whose desktop entry has that name.
///
/// Any other program is simply started. `start` hands the work over to a worker and returns.
class LinuxCommands final : public platform::ChildProcesses {
public:
    /// Brings the window of an application to the front; false when there is none. Main thread.
    using RaiseWindow = std::function<bool(const std::string& name)>;

    /// Takes a sentence for the user. Any thread.
    using Tell = std::function<void(const std::string& sentence)>;

    /// Speech runs on `voice`, starting programs on a worker of its own. `tell` gets a sentence when
    /// something cannot be started.
    LinuxCommands(BackgroundWorker& voice, RaiseWindow raiseWindow, Tell tell);

    void start(const std::string& path, const std::vector<std::string>& arguments) override;

private:
    void speak(const std::string& text);
    void activate(const std::string& argument);
    void launch(const std::string& path, const std::vector<std::string>& arguments);

    BackgroundWorker& m_voice;
    RaiseWindow m_raiseWindow;
    Tell m_tell;
    /// More errands than anyone can request while one program starts.
    BackgroundWorker m_launches{8};
};

} // namespace glimra::desktop
