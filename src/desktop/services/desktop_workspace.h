#pragma once

#include "desktop/services/power_services.h"
#include "desktop/x11/frontmost_application.h"
#include "platform/controls.h"
#include "platform/workspace.h"

#include <QBasicTimer>
#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace glimra::desktop {

/// The desktop session around the application. The X server's events tell it which application is in front;
/// the power services tell it about sleep. Main thread.
class DesktopWorkspace final : public QObject, public platform::Workspace {
public:
    /// An empty name means $DISPLAY. `afterWaking` is called after the application's own handler, when the
    /// screens have woken.
    DesktopWorkspace(const std::string& displayName, PowerServices& power, std::function<void()> afterWaking);

    std::optional<platform::RunningApplication> frontmostApplication() const override;
    void observeFront(std::function<void()> changed) override { m_frontChanged = std::move(changed); }
    void observeSleep(std::function<void()> aboutToSleep, std::function<void()> screensDidWake) override;
    /// Also tells the user what happens, since a browser may fail later without any message.
    bool openUrl(const std::string& address) override;

    /// Sentences for the user.
    platform::Signal<std::string_view> told;

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void processEvents();

    PowerServices& m_power;
    std::function<void()> m_afterWaking;
    std::function<void()> m_frontChanged;
    X11FrontmostApplication m_frontmost;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QBasicTimer m_wakeUp;
};

} // namespace glimra::desktop
