#include "desktop/services/linux_commands.h"

#include "desktop/services/activation_script.h"
#include "desktop/services/application_finder.h"
#include "desktop/services/process.h"
#include "desktop/services/xdg_folders.h"

#include <chrono>
#include <utility>

namespace glimra::desktop {

namespace {

/// It hands the text over and ends, in half a second even where it has to start the speech service first.
/// Where there is no sound device it has been seen to hang.
constexpr auto kSpeechLimit = std::chrono::seconds(5);

} // namespace

LinuxCommands::LinuxCommands(BackgroundWorker& voice, RaiseWindow raiseWindow, platform::SystemLog& systemLog)
    : m_voice(voice),
      m_raiseWindow(std::move(raiseWindow)),
      m_systemLog(systemLog) {
}

void LinuxCommands::start(const std::string& path, const std::vector<std::string>& arguments) {
    if (path == "/usr/bin/say" && arguments.size() == 1)
        speak(arguments.front());
    else if (path == "/usr/bin/osascript" && arguments.size() == 1)
        activate(arguments.front());
    else
        launch(path, arguments);
}

void LinuxCommands::speak(const std::string& text) {
    m_voice.post([text](const std::stop_token& stop) {
        // Behind the two hyphens a text that begins with one is no option.
        runToEnd({"spd-say", {"--", text}, {}}, kSpeechLimit, stop);
    });
}

void LinuxCommands::activate(const std::string& argument) {
    const std::optional<std::string> name = activatedApplication(argument);
    if (!name || name->empty() || m_raiseWindow(*name))
        return;
    m_launches.post([name = *name](const std::stop_token&) {
        if (const std::optional<Command> command = findApplication(name, dataFolders()))
            startDetached(*command);
    });
}

void LinuxCommands::launch(const std::string& path, const std::vector<std::string>& arguments) {
    m_launches.post([this, path, arguments](const std::stop_token&) {
        if (!startDetached({path, arguments, {}}))
            m_systemLog.write("Can't start " + path);
    });
}

} // namespace glimra::desktop
