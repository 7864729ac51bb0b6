#include "desktop/windows/status_report.h"

#include "desktop/windows/status_line.h"
#include "desktop/windows/status_marks.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace glimra::desktop {

namespace {

std::array<MarkText, 3> marks(const StatusSnapshot& snapshot) {
    return {keyboardMark(snapshot, {}), gameMark(snapshot, {}), stripMark(snapshot)};
}

QString markName(Mark mark) {
    return mark == Mark::Good ? "good" : mark == Mark::Bad ? "bad" : "partly";
}

/// What shows, the strongest first; a name for programs.
QString lightName(const StatusSnapshot& snapshot) {
    if (!snapshot.isLit)
        return "nothing";
    if (snapshot.effects.deadAnimationPlaying)
        return "dead";
    if (snapshot.effects.combatAnimationPlaying)
        return "combat";
    if (snapshot.effects.shadowAnimationPlaying)
        return "shadow";
    return snapshot.effects.whisperLightActive ? "whisper" : "profile";
}

} // namespace

QByteArray statusInWords(const StatusSnapshot& snapshot, const ProfileNames& names) {
    const ActivityText activity = activityText(snapshot);
    QStringList lines{
        QStringList{"Profile " + names.title(snapshot.profile), activity.headline, activity.details}.join(
            " · ")};
    if (activity.details.isEmpty())
        lines.front().chop(3);
    lines.append(statusText(snapshot).simplified());
    for (const MarkText& mark : marks(snapshot)) {
        // What is well needs no advice.
        const QStringList told = mark.mark == Mark::Good ? mark.sentences.first(1) : mark.sentences;
        lines.append(mark.label + ": " + told.join(" "));
    }
    return (lines.join("\n") + "\n").toUtf8();
}

QByteArray statusAsJson(const StatusSnapshot& snapshot, const ProfileNames& names) {
    const std::array<MarkText, 3> state = marks(snapshot);
    const std::string_view capture = captureDescription(snapshot.capture);
    const QJsonObject object{
        {"window", snapshot.hasWindow},
        {"profile", snapshot.profile},
        {"profileName", names.name(snapshot.profile)},
        {"light", lightName(snapshot)},
        {"coolingDown", static_cast<qint64>(snapshot.coolingDown)},
        {"messagesPerMinute", static_cast<qint64>(snapshot.messagesPerMinute)},
        {"fastResponse", snapshot.respondsFast},
        {"keyboard", QJsonObject{{"state", markName(state[0].mark)}, {"name", snapshot.keyboardName}}},
        {"game", QJsonObject{{"state", markName(state[1].mark)}, {"inFront", snapshot.gameIsInFront}}},
        {"strip",
         QJsonObject{{"state", markName(state[2].mark)},
                     {"capture", QString::fromUtf8(capture.data(), static_cast<qsizetype>(capture.size()))},
                     {"calibrated", snapshot.isCalibrated},
                     {"secondsAgo",
                      snapshot.secondsSinceStrip ? QJsonValue(*snapshot.secondsSinceStrip) : QJsonValue()}}},
    };
    return QJsonDocument(object).toJson();
}

} // namespace glimra::desktop
