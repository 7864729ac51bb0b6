#include "desktop/services/theme_sounds.h"

#include "desktop/services/xdg_folders.h"

#include <array>
#include <filesystem>
#include <string>
#include <system_error>

namespace glimra::desktop {

namespace {

using namespace std::chrono_literals;

/// The sound of the naming convention that is as short and plain as "Tink".
constexpr std::string_view kThemeSound = "bell";
constexpr auto kLimit = 3s;

/// Every theme falls back on the sounds of this one.
std::optional<std::string> themeFile() {
    const std::string name = "sounds/freedesktop/stereo/" + std::string(kThemeSound) + ".oga";
    for (const std::filesystem::path& folder : dataFolders()) {
        std::error_code error;
        if (std::filesystem::is_regular_file(folder / name, error))
            return (folder / name).string();
    }
    return std::nullopt;
}

/// The first of the players, by choice, that is installed: the one that knows the desktop's theme and its
/// settings, then those that play a file.
std::optional<Command> installedPlayer() {
    if (findProgram("canberra-gtk-play"))
        return Command{"canberra-gtk-play", {"-i", std::string(kThemeSound)}, {}};
    const std::optional<std::string> file = themeFile();
    for (const char* const player : {"pw-play", "paplay"})
        if (file && findProgram(player))
            return Command{player, {*file}, {}};
    return std::nullopt;
}

} // namespace

bool canPlayThemeSounds() {
    return installedPlayer().has_value();
}

ThemeSounds::ThemeSounds(BackgroundWorker& worker)
    : m_worker(worker),
      m_tink(std::make_shared<std::optional<Command>>(installedPlayer())) {
}

void ThemeSounds::play(std::string_view name) {
    if (name != "Tink")
        return;
    m_worker.post([tink = m_tink](const std::stop_token& stop) {
        if (*tink && runToEnd(**tink, kLimit, stop) != 0)
            tink->reset();
    });
}

} // namespace glimra::desktop
