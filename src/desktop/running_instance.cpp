#include "desktop/running_instance.h"

#include "desktop/settings/settings_file.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <algorithm>

namespace glimra::desktop {

namespace {

/// The settings file identifies the instance: two programs using one file would overwrite each other's
/// changes.
QString identityOf(const Options& options) {
    const QString path = QFileInfo(settingsPath(options)).absoluteFilePath();
    if (path == SettingsFile::defaultPath())
        return {};
    return QString::fromLatin1(
        QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex().left(16));
}

} // namespace

RunningInstance::RunningInstance(const Options& options)
    : m_identity(identityOf(options)),
      m_channels(instanceChannels(m_identity)) {
}

bool RunningInstance::claim() {
    const auto handler = [this](const InstanceCommand& command) {
        return m_handler ? m_handler(command) : InstanceAnswer{};
    };
    // Claims every channel, since another start may reach no bus, or a different one.
    const auto held = std::ranges::find_if(m_channels, [&handler](const auto& channel) {
        return channel->claim(handler) == InstanceChannel::Standing::Second;
    });
    m_heldElsewhere = held == m_channels.end() ? std::string() : (*held)->claimed();
    // New channels release what has been claimed so far.
    if (!m_heldElsewhere.empty())
        m_channels = instanceChannels(m_identity);
    return m_heldElsewhere.empty();
}

std::optional<InstanceAnswer> RunningInstance::send(const InstanceCommand& command) {
    for (const auto& channel : m_channels)
        if (std::optional<InstanceAnswer> answer = channel->send(command))
            return answer;
    return std::nullopt;
}

} // namespace glimra::desktop
