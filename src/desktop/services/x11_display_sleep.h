#pragma once

#include "desktop/services/display_sleep.h"
#include "desktop/x11/connection.h"

#include <QBasicTimer>
#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <optional>
#include <string>

namespace glimra::desktop {

/// The sleep of the displays as an X server reports it, on a connection of its own. The screen saver
/// (MIT-SCREEN-SAVER) sends events. The power state (DPMS) has no events in the version that all servers
/// support, so it is polled now and then. Without these extensions the displays count as awake.
class X11DisplaySleep final : public QObject, public DisplaySleep {
public:
    /// An empty name means $DISPLAY. Without a server, or where
    /// none answers within a second, it reports nothing.
    explicit X11DisplaySleep(const std::string& displayName = {});

    void observe(Teller tell) override;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void watchScreenSaver();
    void watchDisplayPower();
    void askForDisplayPower();
    void takeDisplayPower();
    void read();
    void readEvents();
    void giveUp();
    /// Null where no server answered when it was asked.
    std::unique_ptr<Connection> m_connection;
    /// The response type of the screen saver's event; 0, which no event has, when the extension is missing.
    std::uint8_t m_screenSaverEvent = 0;
    /// The request for the displays' power state that has not been answered yet.
    std::optional<unsigned int> m_question;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QBasicTimer m_askAgain;
    Teller m_tell;
};

} // namespace glimra::desktop
