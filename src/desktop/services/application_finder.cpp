#include "desktop/services/application_finder.h"

#include "desktop/services/desktop_entry.h"
#include "desktop/services/unique_fd.h"

#include <QString>

#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace glimra::desktop {

namespace {

namespace fs = std::filesystem;

/// Real entries take some dozen kilobytes at most; real folders hold some hundred entries, a few levels deep.
/// The limits also stop loops of links.
constexpr off_t kMostBytes = off_t{256} << 10;
constexpr int kMostLevels = 4;
constexpr int kMostFiles = 20000;

/// Only the user and root may say what is started, and nobody else may have changed it.
bool isTrusted(const struct stat& status) {
    return (status.st_uid == 0 || status.st_uid == ::geteuid()) && (status.st_mode & S_IWOTH) == 0;
}

/// The content of a regular file that can be trusted. None for anything else, above all for a pipe, where
/// reading would wait for a writer.
std::optional<std::string> readEntryFile(const fs::path& path) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || !isTrusted(status) ||
        status.st_size > kMostBytes)
        return std::nullopt;
    std::string content(static_cast<std::size_t>(status.st_size), '\0');
    const ssize_t count = ::read(file.get(), content.data(), content.size());
    content.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return content;
}

/// The entries in and below a folder, by their ids: the relative path with slashes replaced by hyphens.
std::map<std::string, fs::path> entryFiles(const fs::path& folder) {
    std::map<std::string, fs::path> files;
    std::error_code error;
    constexpr auto kOptions =
        fs::directory_options::follow_directory_symlink | fs::directory_options::skip_permission_denied;
    auto each = fs::recursive_directory_iterator(folder, kOptions, error);
    for (int count = 0; !error && each != fs::end(each) && count < kMostFiles; ++count) {
        if (each.depth() >= kMostLevels)
            each.disable_recursion_pending();
        if (each->path().extension() == ".desktop") {
            std::string id = each->path().lexically_relative(folder).string();
            std::replace(id.begin(), id.end(), '/', '-');
            files.emplace(std::move(id), each->path());
        }
        each.increment(error);
    }
    return files;
}

/// Returns a path as it is, a relative one below the working folder; a bare name is searched in PATH later.
std::string programPath(const std::string& program, const std::string& workingFolder) {
    const bool isRelativePath = program.find('/') != std::string::npos && !program.starts_with('/');
    return isRelativePath ? (fs::path(workingFolder) / program).string() : program;
}

std::optional<Command> commandOf(const DesktopEntry& entry, const fs::path& file) {
    if (entry.hidden || entry.noDisplay || entry.terminal)
        return std::nullopt;
    if (!entry.tryExec.empty() && !findProgram(entry.tryExec))
        return std::nullopt;
    std::optional<std::vector<std::string>> words = execArguments(entry, file.string());
    if (!words)
        return std::nullopt;
    Command command{programPath(words->front(), entry.path), {words->begin() + 1, words->end()}, entry.path};
    return findProgram(command.program) ? std::optional(std::move(command)) : std::nullopt;
}

bool isSameButForCase(std::string_view left, std::string_view right) {
    const auto text = [](std::string_view utf8) {
        return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
    };
    return text(left).compare(text(right), Qt::CaseInsensitive) == 0;
}

} // namespace

std::optional<Command> findApplication(std::string_view name, const std::vector<fs::path>& dataFolders) {
    std::optional<Command> nearly;
    std::set<std::string> seen;
    for (const fs::path& folder : dataFolders) {
        for (const auto& [id, path] : entryFiles(folder / "applications")) {
            // An entry hides all entries with its id in later folders, even when it is marked as deleted.
            const std::optional<std::string> content =
                seen.insert(id).second ? readEntryFile(path) : std::nullopt;
            const std::optional<DesktopEntry> entry = content ? parseDesktopEntry(*content) : std::nullopt;
            if (!entry || !isSameButForCase(entry->name, name))
                continue;
            std::optional<Command> command = commandOf(*entry, path);
            if (command && entry->name == name)
                return command;
            if (!nearly)
                nearly = std::move(command);
        }
    }
    return nearly;
}

} // namespace glimra::desktop
