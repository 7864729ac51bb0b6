#include "desktop/addon/game_finder.h"

#include "desktop/addon/folder_names.h"
#include "desktop/services/application_finder.h"
#include "desktop/services/xdg_folders.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <system_error>
#include <utility>

namespace glimra::desktop::addon {

namespace {

namespace fs = std::filesystem;

struct ClientFolder {
    std::string_view folder;
    std::string_view name;
};
constexpr std::array<ClientFolder, 4> kClientFolders{{
    {"_retail_", "Retail"},
    {"_classic_", "Classic"},
    {"_anniversary_", "Anniversary"},
    {"_classic_era_", "Classic Era"},
}};
constexpr std::string_view kOldClient = "Old client";

/// Folders that may be Wine prefixes, relative to the user's home. A star stands for every folder there.
constexpr std::array<std::string_view, 7> kPrefixes{
    ".wine",
    "Games/*",
    "Faugus/*",
    ".local/share/bottles/bottles/*",
    ".var/app/com.usebottles.bottles/data/bottles/bottles/*",
    ".steam/steam/steamapps/compatdata/*/pfx",
    ".local/share/Steam/steamapps/compatdata/*/pfx",
};
/// Path of the game's folder in a prefix.
constexpr std::array<std::string_view, 3> kGameInPrefix{"drive_c", "Program Files (x86)",
                                                        "World of Warcraft"};

constexpr std::string_view kWinePrefix = "WINEPREFIX=";

bool hasName(const fs::path& folder, std::string_view name) {
    return isSameName(folder.filename().string(), name);
}

std::optional<std::string_view> nameOfClient(const fs::path& folder) {
    const auto found = std::ranges::find_if(
        kClientFolders, [&folder](const ClientFolder& each) { return hasName(folder, each.folder); });
    return found == kClientFolders.end() ? std::nullopt : std::optional(found->name);
}

/// A removed game may leave folders with the right names behind.
bool looksLikeClient(const fs::path& folder) {
    const FolderNames names(folder);
    return names.findFolder("Interface") || names.findFolder("WTF") ||
           std::ranges::any_of(names.all(), [](const std::string& name) {
               return isSameName(fs::path(name).extension().string(), ".exe");
           });
}

class Search {
public:
    void add(std::string_view name, const fs::path& folder) {
        std::error_code error;
        const fs::path place = fs::canonical(folder, error);
        if (!error && std::ranges::find(clients, place, &GameClient::folder) == clients.end())
            clients.push_back({name, place});
    }

    /// Adds the clients in `folder`, and the folder itself if it is an old client's.
    void addFrom(const fs::path& folder) {
        const FolderNames names(folder);
        for (const ClientFolder& client : kClientFolders)
            if (const std::optional<fs::path> found = names.findFolder(client.folder))
                if (looksLikeClient(*found))
                    add(client.name, *found);
        if (names.find("Wow.exe") && names.findFolder("Interface"))
            add(kOldClient, folder);
    }

    void addFromPrefix(const fs::path& prefix) {
        std::optional<fs::path> folder = prefix;
        for (const std::string_view name : kGameInPrefix)
            folder = folder ? FolderNames(*folder).findFolder(name) : std::nullopt;
        if (folder)
            addFrom(*folder);
    }

    std::vector<GameClient> clients;
};

/// The folders that match a pattern of `kPrefixes`.
std::vector<fs::path> foldersOf(const fs::path& home, const fs::path& pattern) {
    std::vector<fs::path> folders{home};
    for (const fs::path& part : pattern) {
        std::vector<fs::path> next;
        for (const fs::path& folder : folders) {
            if (part != "*")
                next.push_back(folder / part);
            else
                for (const std::string& name : FolderNames(folder).all())
                    next.push_back(folder / name);
        }
        folders = std::move(next);
    }
    return folders;
}

/// Converts a path as used under Wine, such as C:\Games\Wow.exe, to a path on this machine; returns other
/// paths unchanged.
fs::path unixPath(std::string text, const fs::path& prefix) {
    const bool hasDrive = text.size() > 2 && text[1] == ':' && text[2] == '\\';
    if (!hasDrive)
        return text;
    std::ranges::replace(text, '\\', '/');
    const std::string drive = text.substr(0, 2);
    const std::optional<fs::path> root = FolderNames(prefix / "dosdevices").findFolder(drive);
    return root ? *root / text.substr(3) : fs::path();
}

/// Adds the clients in the Wine prefix of an application, and those where its program or a path among its
/// arguments lies.
void addFromApplication(Search& search, const Command& command, const fs::path& home) {
    fs::path prefix = home / ".wine";
    std::vector<std::string> words{command.program};
    words.insert(words.end(), command.arguments.begin(), command.arguments.end());
    for (const std::string& word : words)
        if (word.starts_with(kWinePrefix))
            prefix = word.substr(kWinePrefix.size());
    if (prefix.is_absolute())
        search.addFromPrefix(prefix);

    // The working folder is searched like the program's own folder.
    std::vector<fs::path> programs{fs::path(command.workingDirectory) / "."};
    for (const std::string& word : words)
        programs.push_back(unixPath(word, prefix));
    for (const fs::path& program : programs)
        if (program.is_absolute()) {
            search.addFrom(program.parent_path());
            search.addFrom(program.parent_path().parent_path());
        }
}

} // namespace

SearchPlaces searchPlaces(const app::LauncherState& launched) {
    const char* const home = std::getenv("HOME");
    return {home == nullptr ? "" : home,
            dataFolders(),
            {launched.WowAppName, launched.WowClassicAppName, launched.BNAppName}};
}

std::vector<GameClient> findClients(const SearchPlaces& places) {
    Search search;
    if (places.home.is_absolute())
        for (const std::string_view pattern : kPrefixes)
            for (const fs::path& prefix : foldersOf(places.home, pattern))
                search.addFromPrefix(prefix);
    for (const std::string& name : places.applications)
        if (const std::optional<Command> command = findApplication(name, places.dataFolders))
            addFromApplication(search, *command, places.home);
    return std::move(search.clients);
}

std::vector<GameClient> clientsOfFolder(const fs::path& folder) {
    std::error_code error;
    fs::path place = fs::absolute(folder, error).lexically_normal();
    if (error || folder.empty())
        return {};
    if (!place.has_filename())
        place = place.parent_path();
    Search search;
    if (hasName(place, "AddOns") && hasName(place.parent_path(), "Interface"))
        place = place.parent_path();
    if (hasName(place, "Interface") && fs::is_directory(place, error))
        search.add(nameOfClient(place.parent_path()).value_or(kOldClient), place.parent_path());
    else if (const auto name = nameOfClient(place); name && looksLikeClient(place))
        search.add(*name, place);
    else
        search.addFrom(place);
    return std::move(search.clients);
}

std::string searchedPlaces() {
    std::string list;
    for (const std::string_view prefix : kPrefixes)
        list.append(list.empty() ? "~/" : ", ~/").append(prefix);
    return list;
}

} // namespace glimra::desktop::addon
