#include "desktop/windows/program_watch.h"

#include "platform/silent_log.h"
#include "screenlink/scan_settings.h"

#include <QTimerEvent>

#include <algorithm>

namespace glimra::desktop {

namespace {

using std::chrono::duration_cast;
using std::chrono::seconds;

constexpr seconds kMinute{60};
/// One call may be the first of a hundred, and what they belong to is noted after them.
constexpr int kSoonMs = 60;

} // namespace

void RatePerMinute::add(platform::Time moment, std::uint64_t count) {
    m_samples.push_back({moment, count});
    // One that is a minute old or older is what the last minute began with.
    while (m_samples.size() > 2 && m_samples[1].moment <= moment - kMinute)
        m_samples.pop_front();
}

std::uint64_t RatePerMinute::perMinute() const {
    if (m_samples.empty())
        return 0;
    const Sample& first = m_samples.front();
    const Sample& last = m_samples.back();
    const auto passed = std::max(kMinute, duration_cast<seconds>(last.moment - first.moment));
    return (last.count - first.count) * static_cast<std::uint64_t>(kMinute.count()) /
           static_cast<std::uint64_t>(passed.count());
}

ProgramWatch::ProgramWatch(const Parts& parts) : m_parts(parts) {
    if (m_parts.window != nullptr)
        m_parts.window->installEventFilter(this);
    m_parts.keyboardName.changed.observe([this](const std::string&) { look(); });
    m_parts.keyboard.changed.observe([this] {
        m_isLit = true;
        if (m_period == kPeriod && !m_soon.isActive())
            m_soon.start(kSoonMs, this);
    });
    keepPace();
    look();
}

void ProgramWatch::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_soon.timerId())
        m_soon.stop();
    look();
}

bool ProgramWatch::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide ||
        event->type() == QEvent::WindowStateChange)
        keepPace();
    return QObject::eventFilter(watched, event);
}

void ProgramWatch::keepPace() {
    const bool canBeSeen =
        m_parts.window != nullptr && m_parts.window->isVisible() && !m_parts.window->isMinimized();
    const std::chrono::milliseconds period = canBeSeen ? kPeriod : kHiddenPeriod;
    if (period == m_period)
        return;
    m_period = period;
    m_timer.start(static_cast<int>(period.count()), Qt::CoarseTimer, this);
    if (canBeSeen)
        look();
}

void ProgramWatch::look() {
    const platform::Time moment = m_parts.now();
    const app::State& state = m_parts.delegate.state();
    const app::Operations& operations = m_parts.delegate.operations();
    const std::uint64_t frames = operations.screenReader.validFrames();
    const bool demonstrationPlays = m_parts.demonstrationPlays();
    if (frames != m_frames && !demonstrationPlays)
        m_stripSeenAt = moment;
    m_frames = frames;
    m_messages.add(moment, operations.messagePump.dispatchedMessages());

    const int profile = state.profile.activeColorProfile;
    screenlink::ScanSettings scan;
    platform::SilentLog log;
    m_snapshot = {.hasWindow = m_parts.window != nullptr,
                  .keyboardName = QString::fromStdString(m_parts.keyboardName.get()),
                  .capture = m_parts.captureState(),
                  .gameIsInFront = operations.messagePump.gameIsInFront(),
                  .respondsFast = state.readerFlags.fastResponse,
                  .messagesPerMinute = m_messages.perMinute(),
                  .profile = profile,
                  .isLit = m_isLit,
                  .effects = state.effects,
                  .coolingDown = state.lighting.dimmedKeys.size(),
                  .showsCooldowns = state.lighting.useSpellCooldowns.at(static_cast<std::size_t>(profile)),
                  .switchesToProfile2 = state.options.autoToggleProfile2,
                  .isCalibrated = !screenlink::loadScanSettings(scan, {m_parts.userDefaults, log}),
                  .demonstrationPlays = demonstrationPlays};
    if (m_stripSeenAt)
        m_snapshot.secondsSinceStrip =
            static_cast<int>(duration_cast<seconds>(moment - *m_stripSeenAt).count());
    seen.emit(m_snapshot);
}

} // namespace glimra::desktop
