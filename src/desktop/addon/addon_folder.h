#pragma once

#include "desktop/addon/toc_file.h"

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace glimra::desktop::addon {

/// The add-on that is shipped with this Glimra.
struct ShippedAddon {
    std::filesystem::path folder;
    Version version;
    /// Names of its files, all directly in `folder`.
    std::vector<std::string> files;
};

/// Reads the add-on; returns why it cannot be used when it cannot.
std::variant<ShippedAddon, std::string> readShippedAddon(const std::filesystem::path& folder);
/// The add-on's folder that belongs to the running program: installed with it, or built beside it.
std::filesystem::path shippedAddonFolder();

enum class Standing {
    Missing,
    /// An earlier version, or one that cannot be read.
    Older,
    /// The same version, but with a file missing or changed.
    Changed,
    Current,
    Newer,
    /// A symbolic link, most likely to a developer's own sources.
    Linked
};

/// The state of the add-on in a client.
struct InstalledAddon {
    Standing standing = Standing::Missing;
    /// The version, when it can be read.
    std::optional<Version> version;

    /// Whether installing changes it. Installing never replaces a newer version and never follows a link.
    bool canBeInstalled() const {
        return standing == Standing::Missing || standing == Standing::Older || standing == Standing::Changed;
    }
};

/// Looks at the add-on in a client. `client` is the folder that contains Interface/AddOns.
InstalledAddon lookAtAddon(const std::filesystem::path& client, const ShippedAddon& shipped);

/// The result of installing.
struct Installation {
    /// The state before installing.
    InstalledAddon before;
    /// Why installing failed and changed nothing; empty on success.
    std::string error;
    /// Where the player's own files are now, if a replaced folder contained any.
    std::filesystem::path kept;

    /// Whether the client now has the shipped add-on.
    bool isCurrent() const {
        return error.empty() && (before.canBeInstalled() || before.standing == Standing::Current);
    }
};

/// Installs the shipped add-on in a client, replaces an older one, and removes what a killed run has left.
/// Changes nothing else in the folder AddOns.
///
/// The new folder is written beside its place and then exchanged with the old one in one step, so at any time
/// either the old or the new add-on is there. Only where the file system cannot exchange two folders is there
/// a moment without either. May be as slow as the disk, so not for the main thread.
Installation installAddon(const std::filesystem::path& client, const ShippedAddon& shipped);

} // namespace glimra::desktop::addon
