#include "desktop/doctor/checks.h"

#include "desktop/services/bus.h"
#include "desktop/services/process.h"
#include "desktop/services/theme_sounds.h"
#include "desktop/services/xdg_folders.h"

#include <QEventLoop>
#include <QTimer>

namespace glimra::desktop::doctor {

namespace {

constexpr int kPatience = 2000;

/// A bus's answer to a question about itself; none when no bus answers.
std::optional<QVariant> ask(const QString& address, const QString& method, const QVariantList& arguments) {
    const QString service = QStringLiteral("org.freedesktop.DBus");
    QDBusMessage question =
        QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/DBus"), service, method);
    question.setArguments(arguments);
    Bus bus(address);
    QEventLoop loop;
    std::optional<QVariant> answer;
    bus.call(question, &loop, [&](const QDBusMessage& reply) {
        if (reply.type() == QDBusMessage::ReplyMessage)
            answer = reply.arguments().value(0);
        loop.quit();
    });
    QTimer::singleShot(kPatience, &loop, &QEventLoop::quit);
    loop.exec();
    return answer;
}

Finding found(const char* check, bool isThere, const char* there, const char* missing, const char* remedy) {
    return {.check = check,
            .health = isThere ? Health::Good : Health::Limited,
            .text = isThere ? there : missing,
            .remedy = isThere ? "" : remedy};
}

} // namespace

Findings checkServices() {
    const bool hasSessionBus = ask(sessionBusAddress(), QStringLiteral("GetId"), {}).has_value();
    const std::optional<QVariant> loginManager =
        ask(systemBusAddress(), QStringLiteral("NameHasOwner"), {QStringLiteral("org.freedesktop.login1")});
    Findings all{
        found("session-bus", hasSessionBus, "There is a session bus.",
              "There is no session bus. Glimra talks to its own running copy by a socket instead.", ""),
        found(
            "logind", loginManager && loginManager->toBool(), "The login manager tells of sleep.",
            "There is no login manager (logind): Glimra does not notice that the machine sleeps and does not "
            "keep it awake.",
            ""),
        found("speech", findProgram("spd-say").has_value(), "Speech goes through speech-dispatcher.",
              "Nothing speaks during calibration.", "Install the package speech-dispatcher to hear it."),
        found(
            "sound", canPlayThemeSounds(), "The desktop's sounds can be played.",
            "Nothing beeps during calibration.",
            "Install the package sound-theme-freedesktop and one of gnome-session-canberra, pulseaudio-utils "
            "and pipewire-bin to hear it."),
    };
    if (const std::string complaint = runtimeFolderComplaint(); !complaint.empty())
        all.push_back({.check = "runtime-folder", .health = Health::Limited, .text = complaint});
    return all;
}

} // namespace glimra::desktop::doctor
