#include "desktop/addon/addon_words.h"
#include "desktop/addon/game_finder.h"
#include "desktop/doctor/checks.h"
#include "platform/silent_log.h"

namespace glimra::desktop::doctor {

namespace {

using addon::Standing;

std::string_view nameOf(Standing standing) {
    switch (standing) {
    case Standing::Missing:
        return "missing";
    case Standing::Older:
        return "older";
    case Standing::Changed:
        return "changed";
    case Standing::Current:
        return "current";
    case Standing::Newer:
        return "newer";
    case Standing::Linked:
        return "linked";
    }
    return {};
}

std::string remedyFor(const addon::InstalledAddon& installed) {
    if (installed.canBeInstalled())
        return "Choose Install the Add-on in the menu Help, or run glimra --install-addon.";
    if (installed.standing == Standing::Newer)
        return "Update Glimra: the two belong together.";
    return {};
}

Finding findingFor(const addon::GameClient& client, const addon::ShippedAddon& shipped) {
    const addon::InstalledAddon installed = addon::lookAtAddon(client.folder, shipped);
    Finding found{.check = "addon",
                  .text = "World of Warcraft, " + std::string(client.name) + ": the add-on is " +
                          describe(installed, shipped) + " (" + client.folder.string() + ").",
                  .remedy = remedyFor(installed)};
    found.health = found.remedy.empty() ? Health::Good : Health::Limited;
    found.details["client"] = client.name;
    found.details["folder"] = client.folder.string();
    found.details["state"] = nameOf(installed.standing);
    if (installed.version)
        found.details["version"] = installed.version->text();
    return found;
}

} // namespace

Findings checkAddon(const platform::UserDefaults& settings) {
    platform::SilentLog log;
    return checkAddon(app::savedApplicationNames({settings, log}));
}

Findings checkAddon(const app::LauncherState& launched) {
    const auto shipped = addon::readShippedAddon(addon::shippedAddonFolder());
    if (const auto* const problem = std::get_if<std::string>(&shipped))
        return {{.check = "addon", .health = Health::Limited, .text = *problem}};
    Findings findings;
    for (const addon::GameClient& client : addon::findClients(addon::searchPlaces(launched)))
        findings.push_back(findingFor(client, std::get<addon::ShippedAddon>(shipped)));
    if (findings.empty())
        findings.push_back(
            {.check = "addon",
             .health = Health::Limited,
             .text = "World of Warcraft was not found, so that its add-on can't be looked at.",
             .remedy = "If it is installed, run glimra --install-addon FOLDER, with the game's folder."});
    return findings;
}

} // namespace glimra::desktop::doctor
