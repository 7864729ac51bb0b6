#pragma once

#include "app/app_delegate.h"
#include "desktop/x11/capture_state.h"
#include "keyboards/virtual_keyboard.h"

#include <QBasicTimer>
#include <QMainWindow>

#include <deque>
#include <functional>
#include <optional>

namespace glimra::desktop {

/// What the program sees and does, at one moment.
struct StatusSnapshot {
    bool hasWindow = true;
    /// What lights up, in plain words.
    QString keyboardName{};
    CaptureState capture = CaptureState::Screen;
    bool gameIsInFront = false;
    bool respondsFast = false;
    /// Since the last valid frame of the strip; none when there was none yet.
    std::optional<int> secondsSinceStrip{};
    std::uint64_t messagesPerMinute = 0;
    int profile = 1;

    /// Something has been sent to the keyboard.
    bool isLit = false;
    events::EffectState effects{};
    /// Abilities on cooldown, and whether the profile shows them.
    std::size_t coolingDown = 0;
    bool showsCooldowns = false;
    bool switchesToProfile2 = false;
    bool isCalibrated = false;
    bool demonstrationPlays = false;
};

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

/// Looks at the program for all that the main window tells of it: once a second and soon after each change of
/// light while the window can be seen, and hardly ever while it is hidden or minimized.
class ProgramWatch final : public QObject {
public:
    struct Parts {
        /// Null where there is none.
        QMainWindow* window;
        const app::AppDelegate& delegate;
        const platform::UserDefaults& userDefaults;
        keyboards::VirtualKeyboard& keyboard;
        platform::Property<std::string>& keyboardName;
        std::function<CaptureState()> captureState;
        std::function<bool()> demonstrationPlays;
        std::function<platform::Time()> now;
    };

    explicit ProgramWatch(const Parts& parts);

    /// Time between two looks, for a window that can be seen and for one that can't.
    static constexpr std::chrono::milliseconds kPeriod{1000};
    static constexpr std::chrono::milliseconds kHiddenPeriod{30000};
    /// Time until the next look.
    std::chrono::milliseconds period() const { return m_period; }

    /// Emitted for each look, also where nothing has changed.
    platform::Signal<const StatusSnapshot&> seen;
    /// What was seen last.
    const StatusSnapshot& snapshot() const { return m_snapshot; }
    void look();

protected:
    void timerEvent(QTimerEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void keepPace();

    Parts m_parts;
    QBasicTimer m_timer;
    std::chrono::milliseconds m_period{};
    /// Runs when the light has changed since the last look.
    QBasicTimer m_soon;

    StatusSnapshot m_snapshot;
    bool m_isLit = false;
    std::uint64_t m_frames = 0;
    std::optional<platform::Time> m_stripSeenAt;
    RatePerMinute m_messages;
};

} // namespace glimra::desktop
