#include "desktop/windows/profile_names.h"

#include "platform/stored_values.h"

namespace glimra::desktop {

namespace {

std::string keyOf(int profile) {
    return "profileName" + std::to_string(profile);
}

} // namespace

QString ProfileNames::name(int profile) const {
    const std::string stored = platform::storedString(m_userDefaults, keyOf(profile)).value_or("");
    return QString::fromStdString(stored).simplified().left(kLongest);
}

void ProfileNames::setName(int profile, const QString& name) {
    const QString kept = name.simplified().left(kLongest);
    if (kept == this->name(profile))
        return;
    m_userDefaults.set(keyOf(profile), kept.toStdString());
    changed.emit();
}

QString ProfileNames::title(int profile) const {
    const QString name = this->name(profile);
    return name.isEmpty() ? QString::number(profile) : QString("%1 %2").arg(profile).arg(name);
}

} // namespace glimra::desktop
