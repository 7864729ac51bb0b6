#include "desktop/x11/raise_window.h"

#include "desktop/x11/connector.h"
#include "desktop/x11/window_properties.h"

#include <strings.h>

#include <algorithm>

namespace glimra::desktop {

namespace {

/// Value in a request to activate a window: the request comes from the user, not from the window's program.
constexpr std::uint32_t kFromUser = 2;

bool sameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0;
}

xcb_window_t findWindow(Connection& connection, const WindowAtoms& atoms, std::string_view name) {
    xcb_window_t titled = XCB_NONE;
    for (const xcb_window_t window :
         windowsProperty(connection, connection.root(), atoms.clientList, kWindowLimit)) {
        const auto facts = readWindowFacts(connection, atoms, window);
        if (connection.isLost() || connection.isSilent())
            return XCB_NONE;
        if (!facts)
            continue;
        if (sameName(facts->windowClass, name) || sameName(facts->instance, name))
            return window;
        if (titled == XCB_NONE && sameName(facts->title, name))
            titled = window;
    }
    return titled;
}

} // namespace

bool raiseWindow(const std::string& displayName, std::string_view name) {
    const auto connection = Connector(displayName).connect(kConnectPatience);
    if (!connection || name.empty())
        return false;
    const auto atoms = internWindowAtoms(*connection);
    const xcb_window_t window = atoms ? findWindow(*connection, *atoms, name) : XCB_NONE;
    if (window == XCB_NONE)
        return false;

    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = atoms->activeWindow;
    message.data.data32[0] = kFromUser;
    xcb_send_event(connection->xcb(), 0, connection->root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&message));
    // A reply to a later request shows that the message has arrived before we disconnect.
    return connection->reply<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection->xcb())) != nullptr;
}

} // namespace glimra::desktop
