#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace glimra::desktop {

/// Turns what the system asks by into calls on the main thread, as long as it lives: SIGTERM, SIGINT, SIGHUP
/// unless it was ignored when the program began (nohup), and the end of the desktop session. One object at a
/// time, after the application object.
class QuitRequests final : public QObject {
public:
    explicit QuitRequests(std::function<void()> onRequest);
    ~QuitRequests() override;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_onRequest;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace glimra::desktop
