#pragma once

#include "desktop/services/system_services.h"
#include "desktop/settings/settings_file.h"
#include "support/x_server.h"

#include <QDir>
#include <QFile>
#include <QPoint>
#include <QProcess>
#include <QRegularExpression>
#include <QSize>
#include <QTemporaryDir>

namespace glimra::desktop {

/// A screen of 1280 x 720 with a window manager, and a user at its mouse and keyboard.
class RealDesktop {
public:
    RealDesktop() {
        // Only once it takes charge of windows is the manager there.
        glimra::tests::XClient client(m_server.display());
        const xcb_window_t window = client.createWindow({});
        if (!client.showManaged(window))
            throw std::runtime_error("no window manager");
        client.destroy(window);
    }

    std::string display() const { return m_server.display(); }

    struct ActiveWindow {
        QString id;
        QString title;
        QPoint place;
        QSize size;
        friend bool operator==(const ActiveWindow&, const ActiveWindow&) = default;
    };
    /// The window that has the keyboard; nameless when there is none.
    ActiveWindow active() const {
        const QStringList lines =
            user({"getactivewindow", "getwindowname", "getwindowgeometry", "--shell"}).split('\n');
        const auto value = [&](const QString& name) {
            return lines.filter(QRegularExpression("^" + name + "=")).value(0).section('=', 1);
        };
        return {value("WINDOW"),
                lines.value(0),
                {value("X").toInt(), value("Y").toInt()},
                {value("WIDTH").toInt(), value("HEIGHT").toInt()}};
    }
    /// Waits until the window with this title has the keyboard and its place; nameless when it never has.
    ActiveWindow waitForWindow(const QString& title) const {
        ActiveWindow window;
        const bool isThere = glimra::tests::eventually([&] {
            const ActiveWindow before = std::exchange(window, active());
            // The painter appends its profile, and Qt the program's name.
            if (window.title != title && !window.title.startsWith(title + ' '))
                return false;
            // The manager gives the keyboard to a window before it shows it, and may still move it then.
            return window == before &&
                   user({"search", "--onlyvisible", "--name", "."}).split('\n').contains(window.id);
        });
        return isThere ? window : ActiveWindow{};
    }

    void click(const ActiveWindow& window, QPoint place) const {
        user(moveTo(window, place) + QStringList{"click", "1"});
    }
    /// Drags from one place to another in one leap.
    void drag(const ActiveWindow& window, QPoint from, QPoint to) const {
        user(moveTo(window, from) + QStringList{"mousedown", "1"} + moveTo(window, to) +
             QStringList{"mouseup", "1"});
    }
    void press(const QString& key, int times = 1) const {
        user({"key", "--delay", "2", "--repeat", QString::number(times), key});
    }
    void type(const QString& text) const { user({"type", "--delay", "2", text}); }

private:
    static QStringList moveTo(const ActiveWindow& window, QPoint place) {
        return {"mousemove", "--window", window.id, QString::number(place.x()), QString::number(place.y())};
    }
    QString user(const QStringList& does) const {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("DISPLAY", QString::fromStdString(display()));
        process.setProcessEnvironment(environment);
        process.start("xdotool", does);
        if (!process.waitForFinished(10000))
            throw std::runtime_error("xdotool does not answer");
        return process.readAllStandardOutput();
    }

    glimra::tests::XvfbServer m_server{"1280x720x24", glimra::tests::reservedDisplayNumber()};
    glimra::tests::ChildProcess m_manager{"openbox", {"openbox"}, m_server.display()};
};

/// The program in a home of its own. It is ended, at the latest, with this object.
class RealProgram {
public:
    /// Begins with these lines as its settings.
    RealProgram(const RealDesktop& desktop, const QByteArray& settings) {
        QDir(m_home.path()).mkdir("Documents");
        QFile file(path("settings.ini"));
        if (!file.open(QIODevice::WriteOnly) || file.write("[General]\n" + settings) < 0)
            throw std::runtime_error("no settings");
        file.close();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove("QT_QPA_PLATFORM");
        environment.remove("WAYLAND_DISPLAY");
        environment.insert("DISPLAY", QString::fromStdString(desktop.display()));
        environment.insert("HOME", m_home.path());
        environment.insert("XDG_CONFIG_HOME", m_home.path());
        // Nobody's session bus may be drawn in.
        environment.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path("no-bus"));
        m_process.setProcessEnvironment(environment);
        m_process.setStandardOutputFile(path("log"));
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(GLIMRA_PROGRAM, {"--keyboard", "virtual", "--settings", path("settings.ini"),
                                         "--trace", path("trace"), "--log"});
        if (!m_process.waitForStarted())
            throw std::runtime_error("the program does not start");
    }
    ~RealProgram() {
        m_process.kill();
        m_process.waitForFinished();
    }
    RealProgram(const RealProgram&) = delete;
    RealProgram& operator=(const RealProgram&) = delete;

    QString path(const QString& name) const { return m_home.filePath(name); }
    std::string log() const { return contentOf("log").toStdString(); }
    std::string trace() const { return contentOf("trace").toStdString(); }
    QByteArray contentOf(const QString& name) const {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    /// As another run of the program would read it.
    std::optional<platform::StoredValue> setting(const std::string& key) {
        return SettingsFile(path("settings.ini"), m_systemLog).get(key);
    }
    /// The exit status once it has ended by itself.
    std::optional<int> exitStatus() {
        if (!m_process.waitForFinished(10000) || m_process.exitStatus() != QProcess::NormalExit)
            return std::nullopt;
        return m_process.exitCode();
    }

private:
    QTemporaryDir m_home;
    QProcess m_process;
    StderrSystemLog m_systemLog;
};

} // namespace glimra::desktop
