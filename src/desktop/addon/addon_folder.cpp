#include "desktop/addon/addon_folder.h"

#include "desktop/addon/durable_files.h"
#include "desktop/addon/folder_names.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace glimra::desktop::addon {

namespace {

namespace fs = std::filesystem;

/// Prefix of the folders that are being written or removed. The game ignores an add-on folder whose TOC file
/// is not named like the folder.
constexpr std::string_view kTemporary = ".Glimraxmit-";
constexpr std::string_view kUnique = "XXXXXX";
constexpr std::string_view kKept = "Glimraxmit.before";

Toc tocIn(const fs::path& folder) {
    const std::optional<fs::path> file = FolderNames(folder).find(kTocName);
    std::error_code ignored;
    if (!file || !fs::is_regular_file(*file, ignored))
        return {};
    const std::vector<std::uint8_t> bytes = readFile(*file).bytes;
    return parseToc({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
}

bool holds(const std::vector<std::string>& names, std::string_view name) {
    return std::ranges::any_of(names, [name](const std::string& each) { return isSameName(each, name); });
}

bool isSame(const fs::path& left, const fs::path& right) {
    std::error_code error;
    return fs::is_regular_file(left, error) && fs::file_size(left, error) == fs::file_size(right, error) &&
           readFile(left).bytes == readFile(right).bytes;
}

bool isWhole(const fs::path& folder, const ShippedAddon& shipped) {
    const FolderNames names(folder);
    return std::ranges::all_of(shipped.files, [&](const std::string& file) {
        const std::optional<fs::path> found = names.find(file);
        return found && isSame(*found, shipped.folder / file);
    });
}

/// A client's folder Interface/AddOns; none when it does not exist.
std::optional<fs::path> addOnsOf(const fs::path& client) {
    const std::optional<fs::path> interface = FolderNames(client).findFolder("Interface");
    return interface ? FolderNames(*interface).findFolder("AddOns") : std::nullopt;
}

InstalledAddon lookAt(const fs::path& target, const ShippedAddon& shipped) {
    std::error_code ignored;
    if (fs::is_symlink(target, ignored))
        return {Standing::Linked, tocIn(target).version};
    InstalledAddon installed{Standing::Older, tocIn(target).version};
    if (installed.version && !(*installed.version < shipped.version)) {
        const bool isNewer = shipped.version < *installed.version;
        installed.standing = isNewer                    ? Standing::Newer
                             : isWhole(target, shipped) ? Standing::Current
                                                        : Standing::Changed;
    }
    return installed;
}

/// A new folder whose name begins with `kTemporary`.
fs::path makeTemporary(const fs::path& addOns) {
    std::string name = (addOns / (std::string(kTemporary) += kUnique)).string();
    check(::mkdtemp(name.data()) != nullptr);
    return name;
}

/// Renames the folder to the first free name for kept folders; returns an empty path when the disk refuses.
fs::path keep(const fs::path& folder) {
    for (int number = 1;; ++number) {
        fs::path kept = folder.parent_path() / kKept;
        if (number > 1)
            kept += "-" + std::to_string(number);
        if (std::rename(folder.c_str(), kept.c_str()) == 0)
            return kept;
        if (errno != ENOTEMPTY && errno != EEXIST && errno != ENOTDIR)
            return {};
    }
}

/// Removes a folder that contains only files of our add-on. If it contains anything else, which only the
/// player can have put there, the whole folder is renamed instead, and its new path is returned.
fs::path discard(const fs::path& folder, const ShippedAddon& shipped) {
    std::vector<std::string> names = FolderNames(folder).all();
    const std::vector<std::string> listed = tocIn(folder).files;
    std::error_code ignored;
    const bool isOurs = std::ranges::all_of(names, [&](const std::string& name) {
        return (holds(shipped.files, name) || holds(listed, name)) &&
               !fs::is_directory(fs::symlink_status(folder / name, ignored));
    });
    if (!isOurs)
        return keep(folder);
    // The TOC goes last: it identifies our files if the removal is interrupted.
    std::partition(names.begin(), names.end(),
                   [](const std::string& name) { return !isSameName(name, kTocName); });
    for (const std::string& name : names)
        ::unlink((folder / name).c_str());
    ::rmdir(folder.c_str());
    return {};
}

/// Puts `fresh` in the place of `target`, if that exists; the old content is then in a temporary folder.
void replace(const fs::path& fresh, const fs::path& target) {
    std::error_code ignored;
    if (!fs::exists(target, ignored))
        return check(std::rename(fresh.c_str(), target.c_str()) == 0);
    if (::renameat2(AT_FDCWD, fresh.c_str(), AT_FDCWD, target.c_str(), RENAME_EXCHANGE) == 0)
        return;
    // Not every file system can exchange two folders in one step.
    check(errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP);
    const fs::path aside = makeTemporary(target.parent_path());
    if (std::rename(target.c_str(), aside.c_str()) != 0) {
        const int error = errno;
        ::rmdir(aside.c_str());
        throw std::system_error(error, std::generic_category());
    }
    if (std::rename(fresh.c_str(), target.c_str()) != 0) {
        const int error = errno;
        std::rename(aside.c_str(), target.c_str());
        throw std::system_error(error, std::generic_category());
    }
}

/// The folders Interface and AddOns, created when missing. The destructor removes those that were created,
/// unless `keep` was called.
class AddOnsFolder {
public:
    AddOnsFolder() = default;
    void makeIn(const fs::path& client) {
        m_path = client;
        for (const char* const name : {"Interface", "AddOns"}) {
            if (const std::optional<fs::path> found = FolderNames(m_path).find(name)) {
                m_path = *found;
                continue;
            }
            m_path /= name;
            check(::mkdir(m_path.c_str(), 0755) == 0);
            m_made.push_back(m_path);
        }
    }
    ~AddOnsFolder() {
        for (; !m_made.empty(); m_made.pop_back())
            ::rmdir(m_made.back().c_str());
    }
    AddOnsFolder(const AddOnsFolder&) = delete;
    AddOnsFolder& operator=(const AddOnsFolder&) = delete;

    const fs::path& path() const { return m_path; }
    void keep() { m_made.clear(); }

private:
    fs::path m_path;
    std::vector<fs::path> m_made;
};

/// Writes the whole add-on into a new folder beside its place, or throws and leaves nothing.
fs::path writeBeside(const fs::path& addOns, const ShippedAddon& shipped) {
    fs::path fresh = makeTemporary(addOns);
    try {
        for (const std::string& file : shipped.files)
            copyFile(shipped.folder / file, fresh / file);
        // Fails on file systems without permissions, where it does not matter.
        ::chmod(fresh.c_str(), 0755);
        flush(openFolder(fresh).get());
    } catch (...) {
        discard(fresh, shipped);
        throw;
    }
    return fresh;
}

/// Removes replaced add-ons and those that an earlier run left half-written. Returns where the player's own
/// files are kept, if there were any.
fs::path removeRemains(const fs::path& addOns, const ShippedAddon& shipped) {
    fs::path kept;
    std::error_code ignored;
    for (const std::string& name : FolderNames(addOns).all())
        if (name.starts_with(kTemporary) && name.size() == kTemporary.size() + kUnique.size() &&
            fs::is_directory(fs::symlink_status(addOns / name, ignored)))
            if (fs::path own = discard(addOns / name, shipped); !own.empty())
                kept = std::move(own);
    return kept;
}

void putInPlace(const fs::path& addOns, const ShippedAddon& shipped) {
    const fs::path target = FolderNames(addOns).find(kAddonName).value_or(addOns / kAddonName);
    std::error_code ignored;
    if (fs::exists(target, ignored) && !fs::is_directory(target, ignored))
        throw std::runtime_error("what is called Glimraxmit there is no folder");
    const fs::path fresh = writeBeside(addOns, shipped);
    try {
        replace(fresh, target);
    } catch (...) {
        discard(fresh, shipped);
        throw;
    }
}

} // namespace

std::variant<ShippedAddon, std::string> readShippedAddon(const fs::path& folder) {
    const Toc toc = tocIn(folder);
    std::string missing = toc.version ? "" : std::string(kTocName);
    std::error_code ignored;
    for (const std::string& file : toc.files)
        if (fs::path(file).filename() != file || !fs::is_regular_file(folder / file, ignored))
            missing = file;
    if (!missing.empty())
        return "The add-on that belongs to Glimra is not whole: " + (folder / missing).string() +
               " is missing or can't be read. Install Glimra anew.";
    return ShippedAddon{folder, *toc.version, toc.files};
}

fs::path shippedAddonFolder() {
    std::error_code ignored;
    const fs::path programs = fs::read_symlink("/proc/self/exe", ignored).parent_path();
    const fs::path installed = (programs / GLIMRA_ADDON_FROM_PROGRAMS / kAddonName).lexically_normal();
    return fs::exists(installed, ignored) ? installed : programs.parent_path() / "addon" / kAddonName;
}

InstalledAddon lookAtAddon(const fs::path& client, const ShippedAddon& shipped) {
    const std::optional<fs::path> addOns = addOnsOf(client);
    const std::optional<fs::path> target = addOns ? FolderNames(*addOns).find(kAddonName) : std::nullopt;
    return target ? lookAt(*target, shipped) : InstalledAddon{};
}

Installation installAddon(const fs::path& client, const ShippedAddon& shipped) {
    Installation done{.before = lookAtAddon(client, shipped), .error = {}, .kept = {}};
    try {
        AddOnsFolder addOns;
        addOns.makeIn(client);
        const UniqueFd opened = openFolder(addOns.path());
        if (::flock(opened.get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
            throw std::runtime_error("another Glimra is installing it");
        if (done.before.canBeInstalled()) {
            putInPlace(addOns.path(), shipped);
            addOns.keep();
            // The new add-on must be safely on the disk before the old one is removed.
            ::fsync(opened.get());
        }
        done.kept = removeRemains(addOns.path(), shipped);
    } catch (const std::exception& error) {
        done.error = error.what();
    }
    return done;
}

} // namespace glimra::desktop::addon
