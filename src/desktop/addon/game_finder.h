#pragma once

#include "app/launcher.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop::addon {

/// A client of the game: a program with add-ons of its own, in a folder of its own.
struct GameClient {
    /// "Retail", "Classic Era".
    std::string_view name;
    /// The folder that has, or will have, Interface/AddOns in it; without links.
    std::filesystem::path folder;
};

struct SearchPlaces {
    /// The user's home; none is looked at where it is empty.
    std::filesystem::path home;
    /// Where desktop entries are.
    std::vector<std::filesystem::path> dataFolders;
    /// Names of the desktop entries that start the game: where their programs lie, clients may be.
    std::vector<std::string> applications;
};

/// The places of this machine, for a player who launches these applications.
SearchPlaces searchPlaces(const app::LauncherState& launched);

/// Every client in the usual places and where the applications lie, each once however many links lead to it.
/// Reads folders, none of them with all that is below it; not for the main thread.
std::vector<GameClient> findClients(const SearchPlaces& places);

/// The clients of a folder that the user names: a client's own, the one above, or a client's Interface or
/// Interface/AddOns. Empty when it is none of these.
std::vector<GameClient> clientsOfFolder(const std::filesystem::path& folder);

/// What `findClients` looked at, as a list for the user: "~/.wine, ~/Games/*, ...".
std::string searchedPlaces();
/// What kinds of folder `clientsOfFolder` takes, as the end of a sentence.
inline constexpr std::string_view kExpectedFolders = "the folder World of Warcraft, a client's folder in it "
                                                     "such as _retail_, or that one's folder Interface or "
                                                     "Interface/AddOns";

} // namespace glimra::desktop::addon
