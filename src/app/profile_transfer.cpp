#include "app/profile_transfer.h"

#include "app/color_wells.h"
#include "platform/stored_values.h"
#include "platform/whole_file.h"

#include <string>

#include <filesystem>
#include <system_error>

namespace glimra::app {

namespace {

constexpr std::string_view kSuggestedName = "Glimra Color Profiles";
constexpr std::string_view kBackupName = "before-import.keycolormap";

std::string cooldownKey(int profile) {
    return "useActionBarCooldowns" + std::to_string(profile);
}

std::string message(exportResult result, const std::string& supportAddress) {
    switch (result) {
    case exportResult::no_error:
        return "Color profiles exported.\n";
    case exportResult::too_little_storage_error:
        return "Error: Profile data size exceeds buffer. Contact " + supportAddress + " for an update.\n";
    case exportResult::docs_folder_access_error:
        return "Unable to access your Documents folder.\n";
    case exportResult::user_cancel:
        return "Export cancelled.\n";
    case exportResult::write_data_error:
        return "Error: Could not save the file.\n";
    }
    return {};
}

std::string_view message(ImportResult result) {
    switch (result) {
    case ImportResult::Success:
        return "Color profiles imported.\n";
    case ImportResult::NotAProfileFile:
        return "Error: File does not contain valid Color Presets for this version of Glimra.\n";
    case ImportResult::NotReadable:
        return "Error: Unable to access that file or folder.\n";
    case ImportResult::Cancelled:
        return "Import cancelled.\n";
    case ImportResult::NoSafetyCopy:
        return "Error: Unable to keep a copy of your present profiles, so nothing was imported. Is the disk "
               "full?\n";
    }
    return {};
}

} // namespace

ProfileTransfer::ProfileTransfer(const Parts& parts) : m_parts(parts) {
}

void ProfileTransfer::exportPreferences() {
    m_parts.log.appendLog(message(exportColorProfiles(), m_parts.bundle.supportAddress));
}

void ProfileTransfer::importPreferences() {
    m_parts.windows.runAlert(
        {"Import Warning",
         "Import will replace all 9 of your current color settings.\n\nClick cancel on the next "
         "screen if you want to export (save) them first.",
         {"Got it"}});
    const ImportResult result = importColorProfiles();
    m_parts.log.appendLog(message(result));
    if (result == ImportResult::Success)
        refresh();
}

profiles::ProfileRecord ProfileTransfer::storedProfiles() {
    profiles::ProfileFileContent content;
    content.applicationVersion = profiles::versionNumber(m_parts.bundle.version);
    content.blinkTime =
        platform::storedDouble(m_parts.defaults, platform::settings::kBlinkTime.key).value_or(0.0);
    // One map serves all profiles: where one has no map of its own, it takes over what the one before left.
    lighting::KeyMap map(lighting::kKeyCodeCount, 0);
    for (std::size_t i = 0; i < lighting::kProfileCount; ++i) {
        const int profile = static_cast<int>(i) + 1;
        content.useCooldowns[i] =
            platform::storedBool(m_parts.defaults, cooldownKey(profile)).value_or(false);
        m_parts.store.loadColorSet(content.colorSets[i], profile);
        m_parts.store.loadKeyMap(map, profile);
        content.keyMaps[i] = map;
    }
    return profiles::encodeProfiles(content, m_parts.canvasKeyCodes);
}

exportResult ProfileTransfer::exportColorProfiles() {
    const profiles::ProfileRecord record = storedProfiles();
    const std::optional<std::string> documents = m_parts.windows.documentsFolder();
    if (!documents)
        return exportResult::docs_folder_access_error;
    const std::optional<std::string> path = m_parts.windows.runSavePanel(
        {"Export", std::string(kSuggestedName), std::string(profiles::kProfileFileExtension), *documents});
    if (!path)
        return exportResult::user_cancel;
    const std::string error = platform::writeWholeFile(*path, record.bytes());
    if (!error.empty()) {
        m_parts.systemLog.write("Glimra data write error: " + error);
        return exportResult::write_data_error;
    }
    return record.overflowed() ? exportResult::too_little_storage_error : exportResult::no_error;
}

ImportResult ProfileTransfer::importColorProfiles() {
    const std::optional<std::string> path = m_parts.windows.runOpenPanel(
        {"Import", "Importing a color profile will replace all your existing colors and profiles.",
         std::string(profiles::kProfileFileExtension)});
    if (!path)
        return ImportResult::Cancelled;
    const platform::FileContent file =
        platform::readWholeFile(*path, profiles::profileFileSize(m_parts.canvasKeyCodes));
    if (!file.error.empty()) {
        m_parts.systemLog.write("Glimra data read error: " + file.error);
        return ImportResult::NotReadable;
    }
    const std::optional<profiles::ProfileFileContent> content =
        profiles::decodeProfiles(file.bytes, m_parts.canvasKeyCodes, m_parts.systemLog);
    if (!content)
        return ImportResult::NotAProfileFile;
    if (!keepProfilesAsTheyWere())
        return ImportResult::NoSafetyCopy;
    storeProfiles(*content);
    return ImportResult::Success;
}

bool ProfileTransfer::keepProfilesAsTheyWere() {
    if (m_parts.settingsFolder.empty())
        return true;
    // Written beside its place: what an earlier import has kept stays whole whatever becomes of this one.
    const std::filesystem::path folder = m_parts.settingsFolder;
    const std::filesystem::path fresh = folder / (std::string(kBackupName) + ".new");
    std::string error =
        platform::writeWholeFile(fresh.string(), storedProfiles().bytes(), platform::FileReaders::OwnerAlone);
    std::error_code renaming;
    if (error.empty())
        std::filesystem::rename(fresh, folder / kBackupName, renaming);
    if (renaming)
        error = renaming.message();
    if (error.empty())
        return true;
    std::error_code ignored;
    std::filesystem::remove(fresh, ignored);
    m_parts.systemLog.write("Glimra data write error: " + error);
    return false;
}

void ProfileTransfer::storeProfiles(const profiles::ProfileFileContent& content) {
    m_parts.defaults.set(platform::settings::kBlinkTime.key, content.blinkTime);
    for (std::size_t i = 0; i < lighting::kProfileCount; ++i) {
        const int profile = static_cast<int>(i) + 1;
        m_parts.store.saveCooldownFlag(content.useCooldowns[i], profile);
        m_parts.store.saveColorSet(content.colorSets[i], profile);
        m_parts.store.saveKeyMap(content.keyMaps[i], profile);
    }
}

void ProfileTransfer::refresh() {
    m_parts.cooldowns.loadBlinkTime();
    for (int profile = lighting::kProfileCount; profile >= 1; --profile)
        m_parts.store.loadProfile(profile);
    m_parts.store.loadProfile(m_parts.profile.activeColorProfile);
    applyColorSetToWells(m_parts.outlets, m_parts.lightingState.keyboardColorSet, m_parts.canvas);
    m_parts.canvas.fillFrom(m_parts.lightingState);
    m_parts.outlets.actionBarEffectCheckbox.on.set(m_parts.lightingState.useSpellCooldowns[0]);
    if (m_parts.options.useSingleColorMode)
        m_parts.lighting.setAllKeysColor(m_parts.lightingState.keyboardColorSet[lighting::kColorASlot]);
    m_parts.outlets.keyboardCanvas.displayNeeded.emit();
    m_parts.profile.profileTouched = false;
}

} // namespace glimra::app
