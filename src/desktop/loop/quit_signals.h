#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace glimra::desktop {

/// Turns SIGTERM and SIGINT into calls on the main thread while it exists. Only one object at a time.
class QuitSignals final {
public:
    explicit QuitSignals(std::function<void()> onSignal);
    ~QuitSignals();

    QuitSignals(const QuitSignals&) = delete;
    QuitSignals& operator=(const QuitSignals&) = delete;

private:
    std::function<void()> m_onSignal;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace glimra::desktop
