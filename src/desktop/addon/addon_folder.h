#pragma once

#include "desktop/addon/toc_file.h"

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace glimra::desktop::addon {

/// The add-on that came with this Glimra.
struct ShippedAddon {
    std::filesystem::path folder;
    Version version;
    /// Names of its files, all of them in `folder` itself.
    std::vector<std::string> files;
};

/// Reads it; why it cannot be used, where it cannot.
std::variant<ShippedAddon, std::string> readShippedAddon(const std::filesystem::path& folder);
/// The folder that came with the program that runs: installed with it, or built beside it.
std::filesystem::path shippedAddonFolder();

enum class Standing {
    Missing,
    /// Of an earlier version, or of none that can be read.
    Older,
    /// Of the same version, but with a file missing or changed.
    Changed,
    Current,
    Newer,
    /// A symbolic link, to somebody's own sources most likely.
    Linked
};

/// What there is of the add-on in a client.
struct InstalledAddon {
    Standing standing = Standing::Missing;
    /// Where it has one that can be read.
    std::optional<Version> version;

    /// Whether installing changes it: it never goes back to an earlier version, nor through a link.
    bool canBeInstalled() const {
        return standing == Standing::Missing || standing == Standing::Older || standing == Standing::Changed;
    }
};

/// `client` is the folder that has Interface/AddOns in it.
InstalledAddon lookAtAddon(const std::filesystem::path& client, const ShippedAddon& shipped);

/// What came of installing.
struct Installation {
    /// What there was before.
    InstalledAddon before;
    /// Why it failed, and everything is as it was; empty when it did not.
    std::string error;
    /// Where the player's own files now are, if there were any among those that were replaced.
    std::filesystem::path kept;

    /// Whether the client has the shipped add-on now.
    bool isCurrent() const {
        return error.empty() && (before.canBeInstalled() || before.standing == Standing::Current);
    }
};

/// Puts the shipped add-on into a client, in the place of an older one, and removes what a run that was
/// killed has left. Nothing else in the folder AddOns is touched.
///
/// The new folder is written beside its place and then changes places with the old one: whatever happens,
/// the add-on is there as it was or as it shall be. Only where the disk cannot exchange two folders is there
/// a moment without either. Takes as long as the disk does; not for the main thread.
Installation installAddon(const std::filesystem::path& client, const ShippedAddon& shipped);

} // namespace glimra::desktop::addon
