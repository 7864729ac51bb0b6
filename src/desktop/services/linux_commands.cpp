#include "desktop/services/linux_commands.h"

#include "desktop/services/activation_script.h"
#include "desktop/services/application_finder.h"
#include "desktop/services/process.h"
#include "desktop/services/xdg_folders.h"

#include <chrono>
#include <utility>

namespace glimra::desktop {

namespace {

/// spd-say passes the text on and ends within half a second, even when it must start the speech service
/// first. Without a sound device it has been seen to hang.
constexpr auto kSpeechLimit = std::chrono::seconds(5);

constexpr const char* kWhereNamesAre = "Application Names in the menu Launch tells what is launched.";

} // namespace

LinuxCommands::LinuxCommands(BackgroundWorker& voice, RaiseWindow raiseWindow, Tell tell)
    : m_voice(voice),
      m_raiseWindow(std::move(raiseWindow)),
      m_tell(std::move(tell)) {
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
        // After "--", a text that begins with a hyphen is not taken for an option.
        runToEnd({"spd-say", {"--", text}, {}}, kSpeechLimit, stop);
    });
}

void LinuxCommands::activate(const std::string& argument) {
    const std::optional<std::string> name = activatedApplication(argument);
    if (!name)
        return;
    if (name->empty())
        return m_tell(std::string("There is nothing to launch: the application has no name. ") +
                      kWhereNamesAre);
    m_launches.post([this, name = *name](const std::stop_token&) {
        if (m_raiseWindow(name))
            return;
        const std::optional<Command> command = findApplication(name, dataFolders());
        if (!command)
            m_tell("There is no application \"" + name + "\" on this machine. " + kWhereNamesAre);
        else if (!startDetached(*command))
            m_tell("The application \"" + name + "\" can't be started.");
    });
}

void LinuxCommands::launch(const std::string& path, const std::vector<std::string>& arguments) {
    m_launches.post([this, path, arguments](const std::stop_token&) {
        if (!startDetached({path, arguments, {}}))
            m_tell("Can't start " + path + ".");
    });
}

} // namespace glimra::desktop
