#include "desktop/desktop_application.h"
#include "desktop/doctor/doctor.h"
#include "desktop/install_command.h"
#include "desktop/keyboard_options.h"
#include "desktop/options.h"
#include "desktop/running_instance.h"
#include "desktop/services/bus.h"
#include "desktop/services/xdg_folders.h"
#include "platform/silent_log.h"

#include <QApplication>
#include <QDir>
#include <QLibraryInfo>

#include <xcb/xcb.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using namespace glimra;
using namespace glimra::desktop;

namespace {

/// Qt aborts when there is no display for its windows; the user should see a message instead.
bool canShowWindows() {
    if (std::getenv("QT_QPA_PLATFORM") != nullptr)
        return true;
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool connected = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    // Qt can use Wayland directly only with a plugin, which is in a package of its own.
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + "/platforms");
    return connected ||
           (std::getenv("WAYLAND_DISPLAY") != nullptr && !plugins.entryList({"libqwayland*.so"}).isEmpty());
}

int tellRunningInstance(const Options& options, int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const std::optional<InstanceAnswer> answer = RunningInstance(options).send(*options.command);
    if (answer && answer->isAccepted) {
        std::fputs(answer->text.c_str(), stdout);
        return EXIT_SUCCESS;
    }
    const std::string why = answer ? answer->text : "";
    std::fprintf(stderr, "glimra: %s\n", why.empty() ? "Glimra is not running." : why.c_str());
    return EXIT_FAILURE;
}

int examineMachine(const Options& options) {
    const SettingsCopy settings(settingsPath(options));
    platform::SilentLog log;
    return doctor::runDoctor({.captureDisplay = options.captureDisplay,
                              .capture = options.capture,
                              .keyboard = keyboardOptions(options, {settings.values(), log}),
                              .settings = settings},
                             *options.doctor);
}

int run(const Options& options) {
    try {
        return runDesktopApplication(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "glimra: %s\n", error.what());
        return kUsageError;
    }
}

/// The command line, parted: a session manager starts a program again with "-session ID", which is for Qt.
struct Arguments {
    Arguments(int argc, char** argv) {
        for (int i = 0; i < argc; ++i) {
            const bool isForQt = std::string_view(argv[i]) == "-session" && i + 1 < argc;
            if (i == 0 || isForQt)
                qts.push_back(argv[i]);
            if (isForQt)
                qts.push_back(argv[++i]);
            else
                ours.push_back(argv[i]);
        }
    }

    std::vector<char*> ours;
    std::vector<char*> qts;
};

} // namespace

int main(int argc, char** argv) {
    Arguments arguments(argc, argv);
    const std::variant<Options, ExitStatus> parsed =
        parseOptions(static_cast<int>(arguments.ours.size()), arguments.ours.data());
    if (const auto* exit = std::get_if<ExitStatus>(&parsed))
        return exit->status;
    const Options& options = std::get<Options>(parsed);
    if (const std::string complaint = runtimeFolderComplaint(); !complaint.empty())
        std::fprintf(stderr, "glimra: %s\n", complaint.c_str());
    startNoBus();
    if (options.command)
        return tellRunningInstance(options, argc, argv);
    if (options.installAddon) {
        const QCoreApplication application(argc, argv);
        return runInstallCommand(options);
    }
    if (options.doctor) {
        const QCoreApplication application(argc, argv);
        return examineMachine(options);
    }
    if (options.noWindow && options.captureDisplay.empty() && std::getenv("DISPLAY") == nullptr) {
        std::fputs(
            "glimra: there is no display to read. Set DISPLAY, which in a Wayland session takes XWayland, "
            "or name one with --display.\n",
            stderr);
        return EXIT_FAILURE;
    }
    if (!options.noWindow && !canShowWindows()) {
        std::fputs("glimra: there is no display to show windows on. Set DISPLAY, which in a Wayland "
                   "session takes XWayland, or use --no-window.\n",
                   stderr);
        return EXIT_FAILURE;
    }
    // The program that reads the log from a pipe may end first.
    std::signal(SIGPIPE, SIG_IGN);
    arguments.qts.push_back(nullptr);
    int qtCount = static_cast<int>(arguments.qts.size()) - 1;
    QCoreApplication::setApplicationName("glimra");
    QCoreApplication::setApplicationVersion(GLIMRA_VERSION);
    if (options.noWindow) {
        const QCoreApplication application(qtCount, arguments.qts.data());
        return run(options);
    }
    const QApplication application(qtCount, arguments.qts.data());
    QApplication::setApplicationDisplayName("Glimra");
    QApplication::setQuitOnLastWindowClosed(false);
    return run(options);
}
