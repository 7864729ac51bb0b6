#include "desktop/x11/game_window.h"

#include <algorithm>
#include <span>
#include <utility>

namespace glimra::desktop {

namespace {

/// Minimum time between two searches, so that frequent tooltips cost little.
constexpr platform::Duration kSearchPause = std::chrono::milliseconds(250);
/// A window manager may put a window into a frame, and that into another; the game's window is never deeper.
constexpr int kDeepestLevel = 3;
constexpr std::uint32_t kWindowEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;

bool contains(const std::vector<xcb_window_t>& windows, xcb_window_t window) {
    return std::find(windows.begin(), windows.end(), window) != windows.end();
}

/// Requests that are sent together for one window.
struct Questions {
    xcb_window_t window;
    xcb_get_property_cookie_t windowClass;
    xcb_query_tree_cookie_t tree;
};

} // namespace

GameWindowWatch::GameWindowWatch(Connection& connection, std::uint32_t rootEvents)
    : m_connection(connection) {
    const std::uint32_t events =
        rootEvents | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection.xcb(), connection.root(), XCB_CW_EVENT_MASK, &events);
}

void GameWindowWatch::take(const xcb_generic_event_t& event) {
    switch (eventType(event)) {
    case XCB_MAP_NOTIFY:
    case XCB_REPARENT_NOTIFY:
        m_outdated = true;
        break;
    case XCB_UNMAP_NOTIFY:
        forget(reinterpret_cast<const xcb_unmap_notify_event_t&>(event).window);
        break;
    case XCB_DESTROY_NOTIFY:
        forget(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
        break;
    case XCB_CONFIGURE_NOTIFY:
        takeSize(reinterpret_cast<const xcb_configure_notify_event_t&>(event));
        break;
    case XCB_PROPERTY_NOTIFY:
        takeChange(reinterpret_cast<const xcb_property_notify_event_t&>(event));
        break;
    default:
        break;
    }
}

void GameWindowWatch::forget(xcb_window_t window) {
    m_outdated = true;
    if (m_window && m_window->id == window)
        m_window.reset();
}

void GameWindowWatch::takeSize(const xcb_configure_notify_event_t& change) {
    if (m_games.size() > 1 && contains(m_games, change.window))
        m_outdated = true;
    if (!m_window || m_window->id != change.window)
        return;
    m_topMiddle.reset();
    // Any client may send such an event; only the server's own event has the true size.
    if (change.response_type == XCB_CONFIGURE_NOTIFY) {
        m_window->width = change.width;
        m_window->height = change.height;
    }
}

void GameWindowWatch::takeChange(const xcb_property_notify_event_t& change) {
    if (!m_atoms)
        return;
    if (change.window == m_connection.root())
        m_outdated = m_outdated || change.atom == m_atoms->clientList ||
                     (change.atom == m_atoms->activeWindow && m_games.size() > 1);
    else if (change.atom == XCB_ATOM_WM_CLASS)
        m_outdated = true;
    else if (change.atom == XCB_ATOM_WM_NAME || change.atom == m_atoms->windowName)
        m_outdated = m_outdated || contains(m_titled, change.window);
}

void GameWindowWatch::refresh(platform::Time now) {
    if (!m_outdated || now < m_searchAt || m_connection.isSilent())
        return;
    m_searchAt = now + kSearchPause;
    if (!m_atoms)
        m_atoms = internWindowAtoms(m_connection);
    if (m_atoms)
        search();
}

std::optional<Place> GameWindowWatch::topMiddle() {
    if (!m_window)
        return std::nullopt;
    if (!m_topMiddle && !m_connection.isSilent()) {
        const auto reply = m_connection.reply<xcb_translate_coordinates_reply_t>(xcb_translate_coordinates(
            m_connection.xcb(), m_window->id, m_connection.root(),
            static_cast<std::int16_t>(std::min(m_window->width / 2, INT16_MAX)), 0));
        if (reply)
            m_topMiddle = Place{reply->dst_x, reply->dst_y};
    }
    return m_topMiddle;
}

void GameWindowWatch::search() {
    Findings findings;
    std::vector<xcb_window_t> level = firstLevel();
    for (int depth = 0; depth < kDeepestLevel && !level.empty(); ++depth)
        level = examine(level, findings);
    const auto window = choose(findings.games);
    // An interrupted search proves nothing.
    if (m_connection.isSilent() || m_connection.isLost())
        return;
    m_outdated = false;
    m_games = std::move(findings.games);
    m_titled = std::move(findings.titled);
    m_window = window;
    m_topMiddle.reset();
}

std::vector<xcb_window_t> GameWindowWatch::firstLevel() {
    // The window manager lists the windows that it manages. Unmanaged windows, and those of window managers
    // without a list, are found in the tree.
    auto windows = windowsProperty(m_connection, m_connection.root(), m_atoms->clientList, kWindowLimit / 2);
    const auto tree =
        m_connection.reply<xcb_query_tree_reply_t>(xcb_query_tree(m_connection.xcb(), m_connection.root()));
    if (!tree)
        return windows;
    // The topmost windows come last.
    const std::span children(xcb_query_tree_children(tree.get()),
                             static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    const auto top = children.last(std::min<std::size_t>(children.size(), kWindowLimit / 2));
    windows.insert(windows.end(), top.rbegin(), top.rend());
    return windows;
}

std::vector<xcb_window_t> GameWindowWatch::examine(const std::vector<xcb_window_t>& windows,
                                                   Findings& findings) {
    xcb_connection_t* xcb = m_connection.xcb();
    std::vector<Questions> questions;
    for (const xcb_window_t window : windows) {
        const auto place = std::lower_bound(findings.seen.begin(), findings.seen.end(), window);
        if (findings.seen.size() >= kWindowLimit || window == m_connection.root() ||
            (place != findings.seen.end() && *place == window))
            continue;
        findings.seen.insert(place, window);
        // Events are selected first, so that no change after the answers is missed.
        xcb_change_window_attributes(xcb, window, XCB_CW_EVENT_MASK, &kWindowEvents);
        questions.push_back({window, requestWindowClass(m_connection, window), xcb_query_tree(xcb, window)});
    }
    std::vector<xcb_window_t> next;
    for (const Questions& question : questions) {
        const auto facts = windowClassFacts(m_connection, question.windowClass);
        const auto tree = m_connection.reply<xcb_query_tree_reply_t>(question.tree);
        // A silent server must not get more requests.
        if (m_connection.isSilent())
            return {};
        if (!facts || !tree)
            continue;
        if (isGameWindow(question.window, *facts)) {
            findings.games.push_back(question.window);
        } else if (isClassOfAnyProgram(facts->windowClass)) {
            findings.titled.push_back(question.window);
        } else if (facts->windowClass.empty()) {
            const xcb_window_t* const children = xcb_query_tree_children(tree.get());
            next.insert(next.end(), children, children + xcb_query_tree_children_length(tree.get()));
        }
        if (next.size() > kWindowLimit)
            next.resize(kWindowLimit);
    }
    return next;
}

bool GameWindowWatch::isGameWindow(xcb_window_t window, const WindowFacts& facts) {
    const auto isGame = [](const WindowFacts& known) {
        return identify(known).bundleIdentifier == kGameIdentifier;
    };
    if (!isClassOfAnyProgram(facts.windowClass))
        return isGame(facts);
    const auto all = readWindowFacts(m_connection, *m_atoms, window);
    return all && isGame(*all);
}

std::optional<GameWindow> GameWindowWatch::choose(const std::vector<xcb_window_t>& windows) {
    if (windows.empty())
        return std::nullopt;
    const auto active = windowsProperty(m_connection, m_connection.root(), m_atoms->activeWindow, 1);
    std::optional<GameWindow> best;
    std::pair<std::int64_t, bool> bestRank;
    for (const xcb_window_t id : windows) {
        if (m_connection.isSilent())
            return std::nullopt;
        const auto attributesCookie = xcb_get_window_attributes(m_connection.xcb(), id);
        const auto geometryCookie = xcb_get_geometry(m_connection.xcb(), id);
        const auto attributes = m_connection.reply<xcb_get_window_attributes_reply_t>(attributesCookie);
        const auto geometry = m_connection.reply<xcb_get_geometry_reply_t>(geometryCookie);
        if (!attributes || !geometry || attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
            attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT)
            continue;
        const std::pair rank(std::int64_t{geometry->width} * geometry->height, contains(active, id));
        if (best && rank <= bestRank)
            continue;
        best = GameWindow{id, geometry->width, geometry->height};
        bestRank = rank;
    }
    return best;
}

} // namespace glimra::desktop
