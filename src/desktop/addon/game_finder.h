#pragma once

#include "app/launcher.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::desktop::addon {

/// A client of the game: one of its programs, in its own folder with its own add-ons.
struct GameClient {
    /// "Retail", "Classic Era".
    std::string_view name;
    /// The folder that contains, or will contain, Interface/AddOns; symbolic links resolved.
    std::filesystem::path folder;
};

struct SearchPlaces {
    /// The user's home; empty to search none.
    std::filesystem::path home;
    /// The folders with desktop entries.
    std::vector<std::filesystem::path> dataFolders;
    /// Names of the desktop entries that start the game; clients may lie where their programs lie.
    std::vector<std::string> applications;
};

/// The places to search on this machine, for a player who launches these applications.
SearchPlaces searchPlaces(const app::LauncherState& launched);

/// All clients in the usual places and near the applications, each once, however many links lead to it. Reads
/// single folders, never whole trees; not for the main thread.
std::vector<GameClient> findClients(const SearchPlaces& places);

/// The clients in a folder that the user names: a client's own folder, the one above it, or a client's
/// Interface or Interface/AddOns. Empty when it is none of these.
std::vector<GameClient> clientsOfFolder(const std::filesystem::path& folder);

/// The places where `findClients` looks, as a list for the user: "~/.wine, ~/Games/*, ...".
std::string searchedPlaces();
/// The kinds of folder that `clientsOfFolder` accepts, as the end of a sentence.
inline constexpr std::string_view kExpectedFolders = "the folder World of Warcraft, a client's folder in it "
                                                     "such as _retail_, or that one's folder Interface or "
                                                     "Interface/AddOns";

} // namespace glimra::desktop::addon
