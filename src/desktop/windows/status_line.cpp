#include "desktop/windows/status_line.h"

#include <QStatusBar>
#include <QStringList>
#include <QTimerEvent>

#include <algorithm>

namespace glimra::desktop {

namespace {

using std::chrono::duration_cast;
using std::chrono::seconds;

constexpr seconds kMinute{60};

QString stripText(std::optional<int> secondsAgo) {
    if (!secondsAgo)
        return "Strip not seen yet";
    if (*secondsAgo < 2)
        return "Strip seen now";
    if (*secondsAgo < 120)
        return QString("Strip last seen %1 seconds ago").arg(*secondsAgo);
    return QString("Strip last seen %1 minutes ago").arg(*secondsAgo / 60);
}

QString capitalized(QString text) {
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

} // namespace

QString statusText(const StatusSnapshot& snapshot) {
    const QString messages = snapshot.messagesPerMinute == 1
                                 ? QString("1 message per minute")
                                 : QString("%1 messages per minute").arg(snapshot.messagesPerMinute);
    return QStringList{capitalized(snapshot.keyboardName),
                       capitalized(snapshot.captureWay),
                       snapshot.gameIsInFront ? "Game in front" : "Game not in front",
                       stripText(snapshot.secondsSinceStrip),
                       messages,
                       QString("Profile %1").arg(snapshot.profile)}
        .join("   ·   ");
}

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

StatusLine::StatusLine(QMainWindow* window, const app::AppDelegate& delegate,
                       platform::Property<std::string>& keyboardName,
                       std::function<std::string_view()> captureWay, std::function<platform::Time()> now)
    : m_window(window),
      m_delegate(delegate),
      m_keyboardName(keyboardName),
      m_captureWay(std::move(captureWay)),
      m_now(std::move(now)),
      m_label(new QLabel(window)) {
    m_label->setObjectName("statusText");
    m_label->setContentsMargins(12, 2, 12, 2);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setTextInteractionFlags(Qt::NoTextInteraction);
    // The window may be narrower than the text.
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    window->statusBar()->addWidget(m_label, 1);
    m_label->installEventFilter(this);
    window->installEventFilter(this);
    keyboardName.changed.observe([this](const std::string&) { takeSample(); });
    keepPace();
    takeSample();
}

void StatusLine::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_timer.timerId())
        takeSample();
}

bool StatusLine::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_label && event->type() == QEvent::Resize)
        show();
    if (watched == m_window && (event->type() == QEvent::Show || event->type() == QEvent::Hide ||
                                event->type() == QEvent::WindowStateChange))
        keepPace();
    return QObject::eventFilter(watched, event);
}

void StatusLine::keepPace() {
    const bool canBeSeen = m_window->isVisible() && !m_window->isMinimized();
    const std::chrono::milliseconds period = canBeSeen ? kPeriod : kHiddenPeriod;
    if (period == m_period)
        return;
    m_period = period;
    m_timer.start(static_cast<int>(period.count()), Qt::CoarseTimer, this);
    if (canBeSeen)
        takeSample();
}

void StatusLine::takeSample() {
    const platform::Time moment = m_now();
    const std::uint64_t frames = m_delegate.operations().screenReader.validFrames();
    if (frames != m_frames)
        m_stripSeenAt = moment;
    m_frames = frames;
    m_messages.add(moment, m_delegate.operations().messagePump.dispatchedMessages());

    const std::string_view captureWay = m_captureWay();
    StatusSnapshot snapshot{QString::fromStdString(m_keyboardName.get()),
                            QString::fromUtf8(captureWay.data(), static_cast<qsizetype>(captureWay.size())),
                            m_delegate.operations().messagePump.gameIsInFront(),
                            {},
                            m_messages.perMinute(),
                            m_delegate.state().profile.activeColorProfile};
    if (m_stripSeenAt)
        snapshot.secondsSinceStrip =
            static_cast<int>(duration_cast<seconds>(moment - *m_stripSeenAt).count());
    const QString text = statusText(snapshot);
    if (text == m_text)
        return;
    m_text = text;
    m_label->setAccessibleName(text);
    m_label->setToolTip(text);
    show();
}

void StatusLine::show() {
    const QString shown =
        m_label->fontMetrics().elidedText(m_text, Qt::ElideRight, m_label->contentsRect().width());
    if (shown != m_label->text())
        m_label->setText(shown);
}

} // namespace glimra::desktop
