#include "desktop/running_instance.h"

#include "desktop/settings_file.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <algorithm>

namespace glimra::desktop {

namespace {

/// The settings file makes the instance: two programs on one file would undo each other's changes.
QString identityOf(const Options& options) {
    if (!options.settingsFile)
        return {};
    const QString path = QFileInfo(QString::fromStdString(*options.settingsFile)).absoluteFilePath();
    if (path == SettingsFile::defaultPath())
        return {};
    return QString::fromLatin1(
        QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex().left(16));
}

} // namespace

RunningInstance::RunningInstance(const Options& options) : m_channels(instanceChannels(identityOf(options))) {
}

bool RunningInstance::claim(const InstanceChannel::Handler& handler) {
    for (const auto& channel : m_channels) {
        const InstanceChannel::Standing standing = channel->claim(handler);
        if (standing != InstanceChannel::Standing::Unusable)
            return standing == InstanceChannel::Standing::First;
    }
    return true;
}

bool RunningInstance::send(const InstanceCommand& command) {
    return std::ranges::any_of(m_channels, [&command](const auto& channel) {
        return channel->send(command) == InstanceChannel::Delivery::Delivered;
    });
}

} // namespace glimra::desktop
