#pragma once

#include "desktop/settings/settings_text.h"
#include "platform/system_services.h"
#include "platform/user_defaults.h"

#include <set>
#include <string>

namespace glimra::desktop {

/// Settings in memory, as the text of a settings file; the form of the values is in stored_value_text.h. An
/// unreadable value counts as absent and is reported once to the system log. Main thread.
class SettingsValues final : public platform::UserDefaults {
public:
    SettingsValues(SettingsText texts, platform::SystemLog& systemLog);

    const SettingsText& texts() const { return m_texts; }
    void replace(SettingsText texts) { m_texts = std::move(texts); }

    std::optional<platform::StoredValue> get(std::string_view key) const override;
    void set(std::string_view key, platform::StoredValue value) override;
    std::map<std::string, platform::StoredValue, std::less<>> all() const override;

private:
    SettingsText m_texts;
    platform::SystemLog& m_systemLog;
    mutable std::set<std::string, std::less<>> m_reportedKeys;
};

} // namespace glimra::desktop
