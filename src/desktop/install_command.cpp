#include "desktop/install_command.h"

#include "desktop/addon/addon_words.h"
#include "desktop/addon/game_finder.h"
#include "desktop/settings/settings_copy.h"
#include "platform/silent_log.h"

#include <cstdio>
#include <cstdlib>

namespace glimra::desktop {

namespace {

using addon::GameClient;

int complain(const std::string& text) {
    std::fprintf(stderr, "glimra: %s\n", text.c_str());
    return EXIT_FAILURE;
}

/// Returns whether the client now has the current add-on.
bool install(const GameClient& client, const addon::ShippedAddon& shipped) {
    const addon::Installation done = addon::installAddon(client.folder, shipped);
    std::printf("%s: %s\n", client.folder.c_str(), describe(done, shipped).c_str());
    return done.isCurrent();
}

std::vector<GameClient> foundClients(const Options& options) {
    const SettingsCopy settings(settingsPath(options));
    platform::SilentLog log;
    return addon::findClients(addon::searchPlaces(app::savedApplicationNames({settings.values(), log})));
}

} // namespace

int runInstallCommand(const Options& options) {
    const auto shipped = addon::readShippedAddon(addon::shippedAddonFolder());
    if (const auto* const problem = std::get_if<std::string>(&shipped))
        return complain(*problem);
    const bool isNamed = !options.installAddon->empty();
    const std::vector<GameClient> clients =
        isNamed ? addon::clientsOfFolder(*options.installAddon) : foundClients(options);
    if (clients.empty() && isNamed)
        return complain("\"" + *options.installAddon + "\" is no folder of World of Warcraft. Name " +
                        std::string(addon::kExpectedFolders) + ".");
    if (clients.empty())
        return complain("World of Warcraft was not found. It was looked for in " + addon::searchedPlaces() +
                        ", and where the applications lie that Glimra launches. Name its folder: glimra "
                        "--install-addon FOLDER");
    bool areAllCurrent = true;
    for (const GameClient& client : clients)
        areAllCurrent = install(client, std::get<addon::ShippedAddon>(shipped)) && areAllCurrent;
    return areAllCurrent ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace glimra::desktop
