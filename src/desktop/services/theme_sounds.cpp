#include "desktop/services/theme_sounds.h"

#include "desktop/services/xdg_folders.h"

#include <array>
#include <filesystem>
#include <string>
#include <system_error>

namespace glimra::desktop {

namespace {

using namespace std::chrono_literals;

/// The name in the sound naming convention that is closest to "Tink": short and plain.
constexpr std::string_view kThemeSound = "bell";
constexpr auto kLimit = 3s;

/// The file of the theme that all other themes fall back on.
std::optional<std::string> themeFile() {
    const std::string name = "sounds/freedesktop/stereo/" + std::string(kThemeSound) + ".oga";
    for (const std::filesystem::path& folder : dataFolders()) {
        std::error_code error;
        if (std::filesystem::is_regular_file(folder / name, error))
            return (folder / name).string();
    }
    return std::nullopt;
}

/// The first installed player in order of preference: first the one that uses the desktop's theme and
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
