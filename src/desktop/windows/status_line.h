#pragma once

#include "app/app_delegate.h"

#include <QBasicTimer>
#include <QLabel>
#include <QMainWindow>

#include <deque>
#include <optional>

namespace glimra::desktop {

/// What the program sees, at one moment.
struct StatusSnapshot {
    QString keyboardName;
    bool gameIsInFront = false;
    /// Since the last valid frame of the strip; none when there was none yet.
    std::optional<int> secondsSinceStrip;
    std::uint64_t messagesPerMinute = 0;
    int profile = 1;
};

/// A snapshot in plain words.
QString statusText(const StatusSnapshot& snapshot);

/// Keeps the main window's status bar up to date while the window can be seen.
class StatusLine final : public QObject {
public:
    StatusLine(QMainWindow* window, const app::AppDelegate& delegate, const QString& keyboardName);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void takeSample();

    QMainWindow* m_window;
    const app::AppDelegate& m_delegate;
    QString m_keyboardName;
    QLabel* m_label;
    QBasicTimer m_timer;

    std::uint64_t m_frames = 0;
    std::optional<int> m_secondsSinceStrip;
    bool m_wasInFront = false;
    /// Messages so far, once a second of the last minute.
    std::deque<std::uint64_t> m_messages;
};

} // namespace glimra::desktop
