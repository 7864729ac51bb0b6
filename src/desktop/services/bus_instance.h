#pragma once

#include "desktop/services/instance_channel.h"

#include <QObject>

namespace glimra::desktop {

/// The object that the running instance offers on the session bus.
class BusInstance final : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.glimra.Glimra1")

public:
    explicit BusInstance(InstanceChannel::Handler handler) : m_handler(std::move(handler)) {}

    /// Returns false for an unknown command, and for one that is refused; `text` is the answer's.
    Q_SCRIPTABLE Q_INVOKABLE bool Perform(const QString& command, QString& text);

private:
    InstanceChannel::Handler m_handler;
};

} // namespace glimra::desktop
