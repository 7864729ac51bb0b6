#include "desktop/x11/frontmost_application.h"

#include "platform/monotonic_clock.h"

#include <algorithm>
#include <utility>

namespace glimra::desktop {

namespace {

using namespace std::chrono_literals;

/// When the active window changes, window managers report "no window" for about a millisecond.
constexpr platform::Duration kNoWindowPatience = 100ms;
/// Minimum time between two readings, so that a window that keeps changing its title costs little.
constexpr platform::Duration kReadPause = 20ms;
/// In front of an empty desktop, or of a window that X knows nothing of.
const platform::RunningApplication kNobody{};

} // namespace

X11FrontmostApplication::X11FrontmostApplication(const std::string& displayName,
                                                 std::function<void()> changed)
    : m_connector(displayName),
      m_changed(std::move(changed)) {
    auto connection = m_connector.connect(kConnectPatience);
    useConnection(std::move(connection), platform::monotonicNow());
}

int X11FrontmostApplication::fileDescriptor() const {
    return m_connection ? m_connection->fileDescriptor() : -1;
}

std::optional<platform::Time> X11FrontmostApplication::wakeUpAt() const {
    if (!m_connection)
        return m_connector.retryAt();
    std::optional<platform::Time> next;
    if (m_noWindowSince && m_frontmost != kNobody)
        next = *m_noWindowSince + kNoWindowPatience;
    if (m_outdated)
        next = std::min(next.value_or(m_readAt), m_readAt);
    return next;
}

void X11FrontmostApplication::processEvents(platform::Time now) {
    const auto before = m_frontmost;
    if (!m_connection)
        useConnection(m_connector.retry(now), now);
    if (m_connection)
        drainEvents();
    if (m_connection && m_outdated && now >= m_readAt)
        readActiveWindow(now);
    if (m_connection && m_connection->isLost())
        useConnection(nullptr, now);
    if (m_noWindowSince && now - *m_noWindowSince >= kNoWindowPatience)
        m_frontmost = kNobody;
    if (m_frontmost != before && m_changed)
        m_changed();
}

void X11FrontmostApplication::useConnection(std::unique_ptr<Connection> connection, platform::Time now) {
    m_connection = std::move(connection);
    m_watched = XCB_NONE;
    m_noWindowSince.reset();
    m_frontmost.reset();
    if (!m_connection)
        return;
    const auto atoms = internWindowAtoms(*m_connection);
    if (!atoms) {
        m_connection.reset();
        return;
    }
    m_atoms = *atoms;
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection->xcb(), m_connection->root(), XCB_CW_EVENT_MASK, &events);
    readActiveWindow(now);
}

void X11FrontmostApplication::drainEvents() {
    while (const auto event = m_connection->pollEvent()) {
        if (eventType(*event) == XCB_DESTROY_NOTIFY)
            m_outdated = true;
        if (eventType(*event) != XCB_PROPERTY_NOTIFY)
            continue;
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        if (change.window == m_connection->root())
            m_outdated = m_outdated || change.atom == m_atoms.activeWindow;
        else if (change.window == m_watched)
            m_outdated = m_outdated || change.atom == XCB_ATOM_WM_CLASS || change.atom == XCB_ATOM_WM_NAME ||
                         change.atom == m_atoms.windowName;
    }
}

void X11FrontmostApplication::readActiveWindow(platform::Time now) {
    if (m_connection->isSilent()) {
        m_readAt = now + kReplyPatience;
        return;
    }
    m_readAt = now + kReadPause;
    const auto windows = windowsProperty(*m_connection, m_connection->root(), m_atoms.activeWindow, 1);
    const xcb_window_t window = windows.empty() ? XCB_NONE : windows.front();
    std::optional<WindowFacts> facts;
    if (window != XCB_NONE) {
        watch(window);
        facts = readWindowFacts(*m_connection, m_atoms, window);
    }
    m_outdated = m_connection->isSilent();
    if (m_outdated)
        return;
    if (facts) {
        m_frontmost = identify(*facts);
        m_noWindowSince.reset();
    } else if (!m_noWindowSince) {
        m_noWindowSince = now;
    }
    // Events that arrived with the replies will not make the descriptor readable again.
    drainEvents();
}

void X11FrontmostApplication::watch(xcb_window_t window) {
    if (window == m_watched || window == m_connection->root())
        return;
    const std::uint32_t none = XCB_EVENT_MASK_NO_EVENT;
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    if (m_watched != XCB_NONE)
        xcb_change_window_attributes(m_connection->xcb(), m_watched, XCB_CW_EVENT_MASK, &none);
    xcb_change_window_attributes(m_connection->xcb(), window, XCB_CW_EVENT_MASK, &events);
    m_watched = window;
}

} // namespace glimra::desktop
