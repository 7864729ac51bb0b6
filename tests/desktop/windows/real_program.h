#pragma once

#include "desktop/settings_file.h"
#include "desktop/system_services.h"
#include "support/x_server.h"

#include <QDir>
#include <QFile>
#include <QPoint>
#include <QProcess>
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
        QSize size;
    };
    /// The window that has the keyboard; nameless when there is none.
    ActiveWindow active() const {
        const QStringList lines =
            user({"getactivewindow", "getwindowname", "getwindowgeometry", "--shell"}).split('\n');
        ActiveWindow window;
        window.title = lines.value(0);
        const auto number = [&](const QString& name) {
            return lines.filter(name + "=").value(0).section('=', 1).toInt();
        };
        window.id = lines.filter("WINDOW=").value(0).section('=', 1);
        window.size = {number("WIDTH"), number("HEIGHT")};
        return window;
    }
    /// Waits until the window with this title has the keyboard; nameless when it never has.
    ActiveWindow waitForWindow(const QString& title) const {
        ActiveWindow window;
        const bool isThere = glimra::tests::eventually([&] {
            window = active();
            // Qt appends the program's name.
            if (window.title != title && !window.title.startsWith(title + " — "))
                return false;
            // The manager gives the keyboard to a window before it shows it.
            return user({"search", "--onlyvisible", "--name", "."}).split('\n').contains(window.id);
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

/// A desktop's tray, for icons that are windows.
class TrayHost {
public:
    explicit TrayHost(const std::string& display) : m_xcb(xcb_connect(display.c_str(), nullptr)) {
        if (xcb_connection_has_error(m_xcb) != 0)
            throw std::runtime_error("no X server at " + display);
        const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data;
        m_window = xcb_generate_id(m_xcb);
        xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 100, 30, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        m_opcode = atom("_NET_SYSTEM_TRAY_OPCODE");
        const xcb_atom_t selection = atom("_NET_SYSTEM_TRAY_S0");
        xcb_set_selection_owner(m_xcb, m_window, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t announcement{};
        announcement.response_type = XCB_CLIENT_MESSAGE;
        announcement.format = 32;
        announcement.window = screen->root;
        announcement.type = atom("MANAGER");
        announcement.data.data32[1] = selection;
        announcement.data.data32[2] = m_window;
        xcb_send_event(m_xcb, 0, screen->root, XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&announcement));
        xcb_flush(m_xcb);
    }
    ~TrayHost() { xcb_disconnect(m_xcb); }
    TrayHost(const TrayHost&) = delete;
    TrayHost& operator=(const TrayHost&) = delete;

    /// Waits until an icon asks to be docked.
    bool getsAnIcon() {
        return glimra::tests::eventually([this] {
            bool isDocked = false;
            while (xcb_generic_event_t* const event = xcb_poll_for_event(m_xcb)) {
                const auto* const message = reinterpret_cast<const xcb_client_message_event_t*>(event);
                constexpr std::uint32_t kRequestDock = 0;
                isDocked = isDocked || ((event->response_type & 0x7F) == XCB_CLIENT_MESSAGE &&
                                        message->type == m_opcode && message->data.data32[1] == kRequestDock);
                std::free(event);
            }
            return isDocked;
        });
    }

private:
    xcb_atom_t atom(std::string_view name) {
        xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(
            m_xcb, xcb_intern_atom(m_xcb, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
        const xcb_atom_t atom = reply == nullptr ? XCB_NONE : reply->atom;
        std::free(reply);
        return atom;
    }

    xcb_connection_t* m_xcb;
    xcb_window_t m_window = XCB_NONE;
    xcb_atom_t m_opcode = XCB_NONE;
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
        m_process.start(GLIMRA_PROGRAM,
                        {"--keyboard", "virtual", "--settings", path("settings.ini"), "--trace",
                                         path("trace"), "--log"});
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
