#pragma once

#include "app/outlets.h"
#include "events/cooldown_display.h"
#include "platform/bundle.h"
#include "platform/message_log.h"
#include "platform/window_system.h"
#include "profiles/profile_file.h"
#include "profiles/profile_store.h"

namespace glimra::app {

enum class exportResult : std::uint8_t {
    no_error,
    too_little_storage_error,
    docs_folder_access_error,
    user_cancel,
    write_data_error,
};

enum class ImportResult {
    Success = 0,
    NotAProfileFile = 1,
    NotReadable = 2,
    Cancelled = 3,
    /// The profiles as they were could not be kept, so nothing was changed.
    NoSafetyCopy = 4,
};

/// Carries all profiles to a file and back. A file that is not valid leaves the settings as they are. Main
/// thread.
class ProfileTransfer {
public:
    struct Parts {
        platform::WindowSystem& windows;
        platform::UserDefaults& defaults;
        platform::SystemLog& systemLog;
        platform::MessageLog& log;
        const platform::Bundle& bundle;
        /// Where the profiles are kept as they were before an import; empty for nowhere.
        const std::string& settingsFolder;
        Outlets& outlets;
        lighting::LightingOutput& lighting;
        lighting::LightingState& lightingState;
        profiles::ProfileStore& store;
        profiles::ProfileState& profile;
        profiles::CanvasBuffer& canvas;
        const profiles::CanvasKeyCodes& canvasKeyCodes;
        events::CooldownDisplay& cooldowns;
        const events::OptionState& options;
    };

    explicit ProfileTransfer(const Parts& parts);

    /// The menu commands: they ask for the file and say how it went.
    void exportPreferences();
    void importPreferences();

private:
    profiles::ProfileRecord storedProfiles();
    exportResult exportColorProfiles();
    ImportResult importColorProfiles();
    [[nodiscard]] bool keepProfilesAsTheyWere();
    void storeProfiles(const profiles::ProfileFileContent& content);
    void refresh();

    Parts m_parts;
};

} // namespace glimra::app
