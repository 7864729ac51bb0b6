#include "desktop/windows/status_line.h"

#include "desktop/windows/capitalized.h"

#include <QEvent>
#include <QStatusBar>
#include <QStringList>

namespace glimra::desktop {

namespace {

const QString kDot = "   ·   ";

QString stripText(std::optional<int> secondsAgo) {
    if (!secondsAgo)
        return "Strip not seen yet";
    if (*secondsAgo < 2)
        return "Strip seen now";
    if (*secondsAgo < 120)
        return QString("Strip last seen %1 seconds ago").arg(*secondsAgo);
    return QString("Strip last seen %1 minutes ago").arg(*secondsAgo / 60);
}

QString headlineFor(const StatusSnapshot& snapshot) {
    if (!snapshot.isLit)
        return "Nothing has been sent to the keyboard yet";
    if (snapshot.effects.deadAnimationPlaying)
        return "Dead";
    if (snapshot.effects.combatAnimationPlaying)
        return "In combat";
    if (snapshot.effects.shadowAnimationPlaying)
        return "In stealth or a form";
    if (snapshot.effects.whisperLightActive)
        return "A whisper";
    return "At rest";
}

QLabel* barLabel(QMainWindow* window, const char* name) {
    auto* const label = new QLabel(window);
    label->setObjectName(name);
    label->setContentsMargins(12, 2, 12, 2);
    label->setTextFormat(Qt::PlainText);
    return label;
}

} // namespace

ActivityText activityText(const StatusSnapshot& snapshot) {
    ActivityText text{headlineFor(snapshot), {}};
    QStringList details;
    if (snapshot.demonstrationPlays)
        details.append("this is the demonstration");
    if (snapshot.coolingDown > 0)
        details.append(
            QString(snapshot.coolingDown == 1 ? "%1 ability cooling down%2" : "%1 abilities cooling down%2")
                .arg(snapshot.coolingDown)
                .arg(snapshot.showsCooldowns ? "" : ", which this profile does not show"));
    if (snapshot.messagesPerMinute > 0 && !snapshot.demonstrationPlays)
        details.append(QString(snapshot.messagesPerMinute == 1 ? "%1 message in the last minute"
                                                               : "%1 messages in the last minute")
                           .arg(snapshot.messagesPerMinute));
    text.details = details.join(" · ");
    return text;
}

QString statusText(const StatusSnapshot& snapshot) {
    const std::string_view capture = captureDescription(snapshot.capture);
    const QString messages = snapshot.messagesPerMinute == 1
                                 ? QString("1 message per minute")
                                 : QString("%1 messages per minute").arg(snapshot.messagesPerMinute);
    QStringList parts{capitalized(snapshot.keyboardName),
                      capitalized(QString::fromUtf8(capture.data(), static_cast<qsizetype>(capture.size()))),
                      snapshot.gameIsInFront ? "Game in front" : "Game not in front",
                      stripText(snapshot.secondsSinceStrip), messages};
    if (snapshot.respondsFast)
        parts.append("Fast response");
    return parts.join(kDot);
}

StatusLine::StatusLine(QMainWindow* window, ProgramWatch& watch, const ProfileNames& names)
    : m_window(window),
      m_names(names),
      m_label(barLabel(window, "statusText")),
      m_profile(barLabel(window, "statusProfile")) {
    m_label->setTextInteractionFlags(Qt::NoTextInteraction);
    // The window may be narrower than the text.
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    window->statusBar()->addWidget(m_label, 1);
    window->statusBar()->addPermanentWidget(m_profile);
    m_label->installEventFilter(this);
    watch.seen.observe([this](const StatusSnapshot& snapshot) { show(snapshot); });
    show(watch.snapshot());
}

bool StatusLine::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Resize)
        elide();
    return QObject::eventFilter(watched, event);
}

void StatusLine::show(const StatusSnapshot& snapshot) {
    showActivity(activityText(snapshot));
    const QString profile = "Profile " + m_names.title(snapshot.profile);
    if (profile != m_profile->text())
        m_profile->setText(profile);
    const QString text = statusText(snapshot);
    if (text == m_text)
        return;
    m_text = text;
    m_label->setAccessibleName(text);
    m_label->setToolTip(text);
    elide();
}

void StatusLine::showActivity(const ActivityText& activity) {
    const QString text = QString("<b>%1</b>&nbsp; %2")
                             .arg(activity.headline.toHtmlEscaped(), activity.details.toHtmlEscaped());
    auto* const label = m_window->findChild<QLabel*>("activityText");
    if (text == label->text())
        return;
    label->setText(text);
    label->setAccessibleName(activity.details.isEmpty() ? activity.headline
                                                        : activity.headline + ": " + activity.details);
}

void StatusLine::elide() {
    const QString shown =
        m_label->fontMetrics().elidedText(m_text, Qt::ElideRight, m_label->contentsRect().width());
    if (shown != m_label->text())
        m_label->setText(shown);
}

} // namespace glimra::desktop
