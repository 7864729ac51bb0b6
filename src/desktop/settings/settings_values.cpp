#include "desktop/settings/settings_values.h"

#include "desktop/settings/stored_value_text.h"

#include <QString>

#include <utility>

namespace glimra::desktop {

using platform::StoredValue;

SettingsValues::SettingsValues(SettingsText texts, platform::SystemLog& systemLog)
    : m_texts(std::move(texts)),
      m_systemLog(systemLog) {
}

std::optional<StoredValue> SettingsValues::get(std::string_view key) const {
    // A file full of nonsense must not fill the log.
    constexpr std::size_t kMostReports = 100;
    const auto found = m_texts.find(key);
    if (found == m_texts.end())
        return std::nullopt;
    std::optional<StoredValue> value = storedValueFromText(found->second);
    if (!value && m_reportedKeys.size() < kMostReports && m_reportedKeys.insert(found->first).second)
        m_systemLog.write("Settings: the value of \"" + found->first + "\" can't be read and is ignored");
    return value;
}

void SettingsValues::set(std::string_view key, StoredValue value) {
    // What is no UTF-8 is replaced at once, as it will be when the file is read.
    m_texts.insert_or_assign(std::string(key), QString::fromStdString(toText(value)).toStdString());
}

std::map<std::string, StoredValue, std::less<>> SettingsValues::all() const {
    std::map<std::string, StoredValue, std::less<>> values;
    for (const auto& [key, text] : m_texts)
        if (std::optional<StoredValue> value = get(key))
            values.emplace(key, std::move(*value));
    return values;
}

} // namespace glimra::desktop
