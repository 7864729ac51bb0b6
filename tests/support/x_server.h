#pragma once

#include "support/eventually.h"
#include "support/process.h"

#include <poll.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

/// Real X servers and X clients for tests and benchmarks. Whatever cannot be started throws.
namespace glimra::tests {

/// A display number of this process alone: no server takes it of its own accord, not even while a test has
/// killed its server and not yet started the next.
inline int reservedDisplayNumber() {
    return 1000 + static_cast<int>(::getpid() % 50000);
}

/// An Xvfb with one screen ("800x600x24": width, height, depth), on a free display number unless one is
/// given.
class XvfbServer {
public:
    explicit XvfbServer(const std::string& screen = "800x600x24", std::optional<int> number = {}) {
        int ends[2];
        if (::pipe(ends) != 0)
            throw std::runtime_error("pipe failed");
        std::vector<std::string> arguments{"Xvfb",     "-displayfd", std::to_string(ends[1]),
                                           "-screen",  "0",          screen,
                                           "-noreset", "-nolisten",  "tcp"};
        if (number)
            arguments.insert(arguments.begin() + 1, displayOf(*number));
        m_process = std::make_unique<ChildProcess>("Xvfb", std::move(arguments));
        ::close(ends[1]);
        m_number = readNumber(ends[0]);
        ::close(ends[0]);
        if (m_number < 0)
            throw std::runtime_error("Xvfb does not start with the screen " + screen);
    }

    /// Asks the server to end, since a killed one leaves its lock and socket behind.
    ~XvfbServer() {
        m_process->signal(SIGCONT);
        m_process->end(SIGTERM);
    }
    XvfbServer(const XvfbServer&) = delete;
    XvfbServer& operator=(const XvfbServer&) = delete;

    int number() const { return m_number; }
    std::string display() const { return displayOf(m_number); }
    ChildProcess& process() { return *m_process; }
    void kill() { m_process->end(SIGKILL); }

private:
    static std::string displayOf(int number) { return std::string(1, ':').append(std::to_string(number)); }
    /// The line that the server writes once it serves clients; -1 when it does not come.
    static int readNumber(int fileDescriptor) {
        std::string line;
        char c = 0;
        pollfd waiting{fileDescriptor, POLLIN, 0};
        while (::poll(&waiting, 1, 20000) == 1 && ::read(fileDescriptor, &c, 1) == 1) {
            if (c == '\n')
                return std::atoi(line.c_str());
            line += c;
        }
        return -1;
    }

    std::unique_ptr<ChildProcess> m_process;
    int m_number = -1;
};

/// A client that paints on the root window and shows windows. Everything it does has reached the server when
/// the call returns.
class XClient {
public:
    explicit XClient(const std::string& displayName) : m_xcb(xcb_connect(displayName.c_str(), nullptr)) {
        if (xcb_connection_has_error(m_xcb) != 0)
            throw std::runtime_error("no X server at " + displayName);
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data;
        m_context = xcb_generate_id(m_xcb);
        xcb_create_gc(m_xcb, m_context, root(), 0, nullptr);
    }
    ~XClient() { xcb_disconnect(m_xcb); }
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    xcb_window_t root() const { return m_screen->root; }

    void fill(int x, int y, int width, int height, std::uint32_t pixel) {
        fill(root(), x, y, width, height, pixel);
    }
    void fill(xcb_drawable_t drawable, int x, int y, int width, int height, std::uint32_t pixel) {
        const xcb_rectangle_t rectangle{static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                                        static_cast<std::uint16_t>(width),
                                        static_cast<std::uint16_t>(height)};
        xcb_change_gc(m_xcb, m_context, XCB_GC_FOREGROUND, &pixel);
        finish(xcb_poly_fill_rectangle(m_xcb, drawable, m_context, 1, &rectangle));
    }

    /// A window with a WM_CLASS of these bytes ("instance", NUL, "class", NUL), none if they are empty.
    xcb_window_t createWindow(std::string_view windowClass, std::string_view title = {}) {
        const xcb_window_t window = xcb_generate_id(m_xcb);
        xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, window, root(), 0, 0, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        // Flags "input", then its value: true. Window managers focus no window that does not ask for it.
        const std::uint32_t hints[9] = {1, 1};
        setProperty(window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, 32, hints, 9);
        if (!windowClass.empty())
            setText(window, XCB_ATOM_WM_CLASS, windowClass);
        if (!title.empty())
            setText(window, atom("_NET_WM_NAME"), title);
        return window;
    }
    void show(xcb_window_t window) { finish(xcb_map_window(m_xcb, window)); }
    void hide(xcb_window_t window) { finish(xcb_unmap_window(m_xcb, window)); }
    void destroy(xcb_window_t window) { finish(xcb_destroy_window(m_xcb, window)); }
    void place(xcb_window_t window, int x, int y, int width, int height) {
        const int values[] = {x, y, width, height};
        constexpr int kAll =
            XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
        finish(xcb_configure_window(m_xcb, window, kAll, values));
    }
    void reparent(xcb_window_t window, xcb_window_t parent) {
        finish(xcb_reparent_window(m_xcb, window, parent, 0, 0));
    }
    /// Shows a window under a window manager; whether one has taken charge of it. A manager that is still
    /// starting may overlook a window, hence the repetition.
    bool showManaged(xcb_window_t window) {
        const xcb_atom_t state = atom("WM_STATE");
        return eventually([&] {
            show(window);
            return hasProperty(window, state);
        });
    }
    void setText(xcb_window_t window, xcb_atom_t property, std::string_view text) {
        setProperty(window, property, XCB_ATOM_STRING, 8, text.data(), text.size());
    }
    void setNumber(xcb_window_t window, xcb_atom_t property, std::uint32_t value) {
        setProperty(window, property, XCB_ATOM_CARDINAL, 32, &value, 1);
    }
    xcb_atom_t atom(std::string_view name) {
        const auto cookie = xcb_intern_atom(m_xcb, 0, static_cast<std::uint16_t>(name.size()), name.data());
        const auto reply = owned(xcb_intern_atom_reply(m_xcb, cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t{XCB_NONE};
    }

private:
    template <class Reply>
    static std::unique_ptr<Reply, decltype(&std::free)> owned(Reply* reply) {
        return {reply, &std::free};
    }
    bool hasProperty(xcb_window_t window, xcb_atom_t property) {
        const auto cookie = xcb_get_property(m_xcb, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
        const auto reply = owned(xcb_get_property_reply(m_xcb, cookie, nullptr));
        return reply && reply->type != XCB_NONE;
    }
    void setProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, std::uint8_t format,
                     const void* data, std::size_t count) {
        finish(xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, window, property, type, format,
                                   static_cast<std::uint32_t>(count), data));
    }
    /// An answer comes after all that was asked for before.
    void finish(xcb_void_cookie_t) {
        owned(xcb_get_input_focus_reply(m_xcb, xcb_get_input_focus(m_xcb), nullptr));
    }

    xcb_connection_t* m_xcb;
    xcb_screen_t* m_screen = nullptr;
    xcb_gcontext_t m_context = 0;
};

} // namespace glimra::tests
