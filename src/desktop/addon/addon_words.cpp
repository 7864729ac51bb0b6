#include "desktop/addon/addon_words.h"

namespace glimra::desktop::addon {

std::string describe(const InstalledAddon& installed, const ShippedAddon& shipped) {
    const std::string& ours = shipped.version.text();
    const std::string theirs = installed.version ? installed.version->text() : "";
    switch (installed.standing) {
    case Standing::Missing:
        return "missing";
    case Standing::Older:
        return theirs.empty() ? "there in a version that can't be read" : theirs + ", older than " + ours;
    case Standing::Changed:
        return theirs + ", but not as it was shipped";
    case Standing::Current:
        return theirs + ", current";
    case Standing::Newer:
        return theirs + ", newer than Glimra's " + ours;
    case Standing::Linked:
        return "a symbolic link, which Glimra leaves alone";
    }
    return {};
}

std::string describe(const Installation& installation, const ShippedAddon& shipped) {
    const std::string& ours = shipped.version.text();
    const std::string theirs = installation.before.version ? installation.before.version->text() : "";
    if (!installation.error.empty())
        return "could not be written: " + installation.error;
    const std::string kept =
        installation.kept.empty() ? "" : "; files of your own are kept in " + installation.kept.string();
    switch (installation.before.standing) {
    case Standing::Missing:
        return "installed " + ours + kept;
    case Standing::Older:
        return "replaced " + (theirs.empty() ? "an unknown version" : theirs) + " by " + ours + kept;
    case Standing::Changed:
        return "restored " + ours + kept;
    case Standing::Current:
        return ours + " is current" + kept;
    case Standing::Newer:
        return "left as it is: " + theirs + " is newer than Glimra's " + ours + kept;
    case Standing::Linked:
        return "left as it is: Glimraxmit is a symbolic link there" + kept;
    }
    return {};
}

} // namespace glimra::desktop::addon
