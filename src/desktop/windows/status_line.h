#pragma once

#include "app/app_delegate.h"

#include <QBasicTimer>
#include <QLabel>
#include <QMainWindow>

#include <deque>
#include <functional>
#include <optional>

namespace glimra::desktop {

/// What the program sees, at one moment.
struct StatusSnapshot {
    QString keyboardName;
    QString captureWay;
    bool gameIsInFront = false;
    /// Since the last valid frame of the strip; none when there was none yet.
    std::optional<int> secondsSinceStrip;
    std::uint64_t messagesPerMinute = 0;
    int profile = 1;
};

/// A snapshot in plain words.
QString statusText(const StatusSnapshot& snapshot);

/// How many a minute come of something that is counted from time to time.
class RatePerMinute {
public:
    /// `count` is what was counted so far; moments go forwards only.
    void add(platform::Time moment, std::uint64_t count);
    /// Over the last minute; over more where nothing was added for longer, over less in the first minute.
    std::uint64_t perMinute() const;

private:
    struct Sample {
        platform::Time moment;
        std::uint64_t count;
    };
    std::deque<Sample> m_samples;
};

/// Keeps the main window's status bar up to date: once a second while the window can be seen, and hardly ever
/// while it is hidden or minimized. What does not fit into the bar is left out at its end; the tool tip has
/// all of it.
class StatusLine final : public QObject {
public:
    StatusLine(QMainWindow* window, const app::AppDelegate& delegate,
               platform::Property<std::string>& keyboardName, std::function<std::string_view()> captureWay,
               std::function<platform::Time()> now);

    /// Time between two looks, for a window that can be seen and for one that can't.
    static constexpr std::chrono::milliseconds kPeriod{1000};
    static constexpr std::chrono::milliseconds kHiddenPeriod{30000};

    /// Time until the next look.
    std::chrono::milliseconds period() const { return m_period; }

protected:
    void timerEvent(QTimerEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void keepPace();
    void takeSample();
    void show();

    QMainWindow* m_window;
    const app::AppDelegate& m_delegate;
    const platform::Property<std::string>& m_keyboardName;
    std::function<std::string_view()> m_captureWay;
    std::function<platform::Time()> m_now;
    QLabel* m_label;
    QString m_text;
    QBasicTimer m_timer;
    std::chrono::milliseconds m_period{};

    std::uint64_t m_frames = 0;
    std::optional<platform::Time> m_stripSeenAt;
    RatePerMinute m_messages;
};

} // namespace glimra::desktop
