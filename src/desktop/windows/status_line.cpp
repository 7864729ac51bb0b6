#include "desktop/windows/status_line.h"

#include <QStatusBar>
#include <QStringList>
#include <QTimerEvent>

namespace glimra::desktop {

namespace {

constexpr std::size_t kSamplesOfAMinute = 61;

QString stripText(std::optional<int> seconds) {
    if (!seconds)
        return "Strip not seen yet";
    if (*seconds < 2)
        return "Strip seen now";
    if (*seconds < 120)
        return QString("Strip last seen %1 seconds ago").arg(*seconds);
    return QString("Strip last seen %1 minutes ago").arg(*seconds / 60);
}

} // namespace

QString statusText(const StatusSnapshot& snapshot) {
    QString keyboard = snapshot.keyboardName;
    if (!keyboard.isEmpty())
        keyboard[0] = keyboard[0].toUpper();
    const QString messages = snapshot.messagesPerMinute == 1
                                 ? QString("1 message in the last minute")
                                 : QString("%1 messages in the last minute").arg(snapshot.messagesPerMinute);
    return QStringList{keyboard, snapshot.gameIsInFront ? "Game in front" : "Game not in front",
                       stripText(snapshot.secondsSinceStrip), messages,
                       QString("Profile %1").arg(snapshot.profile)}
        .join("   ·   ");
}

StatusLine::StatusLine(QMainWindow* window, const app::AppDelegate& delegate, const QString& keyboardName)
    : m_window(window),
      m_delegate(delegate),
      m_keyboardName(keyboardName),
      m_label(new QLabel(window)) {
    m_label->setObjectName("statusText");
    m_label->setAccessibleName("Status");
    m_label->setContentsMargins(12, 2, 12, 2);
    window->statusBar()->addWidget(m_label, 1);
    takeSample();
    m_timer.start(1000, Qt::CoarseTimer, this);
}

void StatusLine::timerEvent(QTimerEvent* event) {
    if (event->timerId() == m_timer.timerId())
        takeSample();
}

void StatusLine::takeSample() {
    const std::uint64_t frames = m_delegate.validFrames();
    if (frames != m_frames)
        m_secondsSinceStrip = 0;
    else if (m_secondsSinceStrip)
        ++*m_secondsSinceStrip;
    m_frames = frames;
    m_messages.push_back(m_delegate.dispatchedMessages());
    if (m_messages.size() > kSamplesOfAMinute)
        m_messages.pop_front();
    // The countdown to the next refresh passes 0 also while the game is in front, but not twice in a row.
    const bool isInFront = m_delegate.state().messages.WoWisInTheForeground != 0;
    const StatusSnapshot snapshot{m_keyboardName, isInFront || m_wasInFront, m_secondsSinceStrip,
                                  m_messages.back() - m_messages.front(),
                                  m_delegate.state().profile.activeColorProfile};
    m_wasInFront = isInFront;
    if (!m_window->isVisible() && !m_label->text().isEmpty())
        return;
    const QString text = statusText(snapshot);
    if (text != m_label->text())
        m_label->setText(text);
}

} // namespace glimra::desktop
