#include "desktop/x11/application_identity.h"

#include "desktop/x11/process_text.h"
#include "desktop/x11/utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace glimra::desktop {

namespace {

/// Every build and branch of the game: live, test and beta; retail and classic; for each processor.
constexpr std::array<std::string_view, 13> kGamePrograms{
    "wow.exe",         "wow-64.exe",      "wow-arm64.exe",       "wowb.exe",       "wowb-64.exe",
    "wowb-arm64.exe",  "wowt.exe",        "wowt-64.exe",         "wowt-arm64.exe", "wowclassic.exe",
    "wowclassicb.exe", "wowclassict.exe", "wowclassic-arm64.exe"};

constexpr std::string_view kGameTitle = "World of Warcraft";
/// Proton gives all windows in a prefix a class made of this and Steam's number, whatever program shows them.
constexpr std::string_view kProtonClassPrefix = "steam_app_";

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string lowered(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

bool isWindowsProgram(std::string_view name) {
    return lowered(name).ends_with(".exe");
}

std::string_view withoutFolder(std::string_view path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

std::string readProcessText(std::uint32_t processId, const char* file) {
    return readPatiently("/proc/" + std::to_string(processId) + "/" + file).value_or("");
}

bool isGame(const WindowFacts& window) {
    if (isGameProgram(window.instance) || isGameProgram(window.windowClass))
        return true;
    if (!isClassOfAnyProgram(window.windowClass))
        return false;
    // In a sandbox the process may be hidden, or its id may belong to another process. Then the title
    // decides.
    const std::string program = windowsProgram(window.processId);
    return program.empty() ? window.title == kGameTitle : isGameProgram(program);
}

} // namespace

bool isGameProgram(std::string_view name) {
    return std::find(kGamePrograms.begin(), kGamePrograms.end(), lowered(name)) != kGamePrograms.end();
}

std::string windowsProgram(std::uint32_t processId) {
    if (processId == 0)
        return {};
    // The arguments are checked first, because the process name is cut after 15 characters.
    const std::string commandLine = readProcessText(processId, "cmdline");
    for (std::string_view rest = commandLine; !rest.empty();) {
        const std::string_view argument = rest.substr(0, rest.find('\0'));
        if (isWindowsProgram(argument))
            return std::string(withoutFolder(argument));
        rest.remove_prefix(std::min(argument.size() + 1, rest.size()));
    }
    std::string name = readProcessText(processId, "comm");
    name.resize(std::min(name.find('\n'), name.size()));
    return isWindowsProgram(name) ? name : std::string();
}

bool isClassOfAnyProgram(std::string_view windowClass) {
    return lowered(windowClass).starts_with(kProtonClassPrefix);
}

platform::RunningApplication identify(const WindowFacts& window) {
    if (isGame(window))
        return {std::string(kGameIdentifier)};
    if (window.windowClass.empty())
        return {};
    return {validUtf8(window.windowClass)};
}

} // namespace glimra::desktop
