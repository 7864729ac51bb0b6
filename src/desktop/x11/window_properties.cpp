#include "desktop/x11/window_properties.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace glimra::desktop {

namespace {

constexpr std::uint32_t kTextLimit = 1024;

using Property = XcbPointer<xcb_get_property_reply_t>;

/// Reads at most `words` units of four bytes.
xcb_get_property_cookie_t request(Connection& connection, xcb_window_t window, xcb_atom_t property,
                                  std::uint32_t words) {
    return xcb_get_property(connection.xcb(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, words);
}

std::string text(const Property& property) {
    if (!property || property->format != 8)
        return {};
    return {static_cast<const char*>(xcb_get_property_value(property.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(property.get()))};
}

std::vector<std::uint32_t> numbers(const Property& property) {
    if (!property || property->format != 32)
        return {};
    const auto length = static_cast<std::size_t>(xcb_get_property_value_length(property.get()));
    std::vector<std::uint32_t> result(length / sizeof(std::uint32_t));
    if (!result.empty())
        std::memcpy(result.data(), xcb_get_property_value(property.get()),
                    result.size() * sizeof(std::uint32_t));
    return result;
}

} // namespace

std::optional<WindowAtoms> internWindowAtoms(Connection& connection) {
    WindowAtoms atoms;
    struct Name {
        xcb_atom_t& atom;
        std::string_view name;
        xcb_intern_atom_cookie_t cookie{};
    };
    Name names[] = {{atoms.activeWindow, "_NET_ACTIVE_WINDOW"},
                    {atoms.clientList, "_NET_CLIENT_LIST"},
                    {atoms.windowName, "_NET_WM_NAME"},
                    {atoms.processId, "_NET_WM_PID"}};
    for (Name& entry : names)
        entry.cookie = xcb_intern_atom(connection.xcb(), 0, static_cast<std::uint16_t>(entry.name.size()),
                                       entry.name.data());
    bool complete = true;
    for (Name& entry : names) {
        const auto reply = connection.reply<xcb_intern_atom_reply_t>(entry.cookie);
        complete = complete && reply;
        if (reply)
            entry.atom = reply->atom;
    }
    return complete ? std::optional(atoms) : std::nullopt;
}

std::vector<xcb_window_t> windowsProperty(Connection& connection, xcb_window_t window, xcb_atom_t property,
                                          std::uint32_t limit) {
    return numbers(connection.reply<xcb_get_property_reply_t>(request(connection, window, property, limit)));
}

xcb_get_property_cookie_t requestWindowClass(Connection& connection, xcb_window_t window) {
    return request(connection, window, XCB_ATOM_WM_CLASS, kTextLimit / 4);
}

std::optional<WindowFacts> windowClassFacts(Connection& connection, xcb_get_property_cookie_t cookie) {
    const auto windowClass = connection.reply<xcb_get_property_reply_t>(cookie);
    if (!windowClass)
        return std::nullopt;
    // "instance", NUL, "class", NUL; the last NUL, or the whole second part, may be missing.
    WindowFacts facts;
    const std::string both = text(windowClass);
    const std::size_t end = std::min(both.find('\0'), both.size());
    facts.instance = both.substr(0, end);
    if (end < both.size())
        facts.windowClass = both.substr(end + 1, both.find('\0', end + 1) - (end + 1));
    return facts;
}

std::optional<WindowFacts> readWindowFacts(Connection& connection, const WindowAtoms& atoms,
                                           xcb_window_t window) {
    const auto classCookie = requestWindowClass(connection, window);
    const auto nameCookie = request(connection, window, atoms.windowName, kTextLimit / 4);
    const auto oldNameCookie = request(connection, window, XCB_ATOM_WM_NAME, kTextLimit / 4);
    const auto processCookie = request(connection, window, atoms.processId, 1);
    auto facts = windowClassFacts(connection, classCookie);
    const auto name = connection.reply<xcb_get_property_reply_t>(nameCookie);
    const auto oldName = connection.reply<xcb_get_property_reply_t>(oldNameCookie);
    const auto process = connection.reply<xcb_get_property_reply_t>(processCookie);
    if (!facts)
        return std::nullopt;
    facts->title = text(name);
    if (facts->title.empty())
        facts->title = text(oldName);
    const auto processes = numbers(process);
    facts->processId = processes.empty() ? 0 : processes.front();
    return facts;
}

} // namespace glimra::desktop
