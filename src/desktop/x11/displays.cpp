#include "desktop/x11/displays.h"

#include <xcb/randr.h>

#include <algorithm>
#include <span>
#include <vector>

namespace glimra::desktop {

namespace {

/// The number of controllers that drive a display. None when the server has no outputs, as is possible with
/// nested servers: then its controllers say nothing about displays.
std::optional<int> activeControllers(Connection& connection,
                                     const xcb_randr_get_screen_resources_current_reply_t& resources) {
    if (resources.num_outputs == 0)
        return std::nullopt;
    const std::span controllers(xcb_randr_get_screen_resources_current_crtcs(&resources),
                                resources.num_crtcs);
    std::vector<xcb_randr_get_crtc_info_cookie_t> cookies;
    for (const xcb_randr_crtc_t controller : controllers)
        cookies.push_back(xcb_randr_get_crtc_info(connection.xcb(), controller, resources.config_timestamp));
    int count = 0;
    for (const auto cookie : cookies) {
        const auto info = connection.reply<xcb_randr_get_crtc_info_reply_t>(cookie);
        if (info && info->mode != XCB_NONE && info->num_outputs > 0)
            ++count;
    }
    return count;
}

/// Sets the monitors. The main one is the primary monitor; many servers have none, then it is the one nearest
/// to the top left corner.
void takeMonitors(Displays& displays, const xcb_randr_get_monitors_reply_t& monitors) {
    std::optional<Area> primary;
    std::optional<Area> nearest;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(&monitors); it.rem > 0;
         xcb_randr_monitor_info_next(&it)) {
        const Area area{it.data->x, it.data->y, it.data->width, it.data->height};
        displays.monitors.push_back(area);
        if (it.data->primary && !primary)
            primary = area;
        if (!nearest || area.x + area.y < nearest->x + nearest->y)
            nearest = area;
    }
    displays.main = primary.value_or(nearest.value_or(displays.main));
}

} // namespace

DisplayWatch::DisplayWatch(Connection& connection) : m_connection(connection) {
    xcb_connection_t* xcb = m_connection.xcb();
    // For monitors defined by hand, the only event is that the root window is configured.
    const std::uint32_t events = kRootEvents;
    xcb_change_window_attributes(xcb, m_connection.root(), XCB_CW_EVENT_MASK, &events);

    const xcb_query_extension_reply_t* extension = xcb_get_extension_data(xcb, &xcb_randr_id);
    if (extension == nullptr || !extension->present)
        return;
    m_firstRandrEvent = extension->first_event;
    const auto version =
        m_connection.reply<xcb_randr_query_version_reply_t>(xcb_randr_query_version(xcb, 1, 5));
    const auto isAtLeast = [&version](std::uint32_t minor) {
        return version && (version->major_version > 1 ||
                           (version->major_version == 1 && version->minor_version >= minor));
    };
    m_hasRandr = isAtLeast(3);
    m_hasMonitors = isAtLeast(5);
    if (m_hasRandr)
        xcb_randr_select_input(xcb, m_connection.root(),
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
}

void DisplayWatch::update() {
    while (const auto event = m_connection.pollEvent())
        take(*event);
    refresh();
}

void DisplayWatch::take(const xcb_generic_event_t& event) {
    m_outdated = m_outdated || isDisplayEvent(event);
}

void DisplayWatch::refresh() {
    if (!m_outdated)
        return;
    if (const auto displays = query()) {
        m_displays = *displays;
        m_outdated = false;
    }
}

bool DisplayWatch::isDisplayEvent(const xcb_generic_event_t& event) const {
    const int type = eventType(event);
    if (type == XCB_CONFIGURE_NOTIFY)
        return reinterpret_cast<const xcb_configure_notify_event_t&>(event).window == m_connection.root();
    return (m_hasRandr && (type == m_firstRandrEvent + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                           type == m_firstRandrEvent + XCB_RANDR_NOTIFY));
}

std::optional<Displays> DisplayWatch::query() {
    xcb_connection_t* xcb = m_connection.xcb();
    const xcb_window_t root = m_connection.root();
    const auto geometryCookie = xcb_get_geometry(xcb, root);
    std::optional<xcb_randr_get_screen_resources_current_cookie_t> resourcesCookie;
    std::optional<xcb_randr_get_monitors_cookie_t> monitorsCookie;
    if (m_hasRandr)
        resourcesCookie = xcb_randr_get_screen_resources_current(xcb, root);
    if (m_hasMonitors)
        monitorsCookie = xcb_randr_get_monitors(xcb, root, true);

    XcbPointer<xcb_randr_get_screen_resources_current_reply_t> resources;
    XcbPointer<xcb_randr_get_monitors_reply_t> monitors;
    const auto geometry = m_connection.reply<xcb_get_geometry_reply_t>(geometryCookie);
    if (resourcesCookie)
        resources = m_connection.reply<xcb_randr_get_screen_resources_current_reply_t>(*resourcesCookie);
    if (monitorsCookie)
        monitors = m_connection.reply<xcb_randr_get_monitors_reply_t>(*monitorsCookie);
    std::optional<int> count;
    if (resources)
        count = activeControllers(m_connection, *resources);
    if (!geometry || m_connection.isLost() || m_connection.isSilent())
        return std::nullopt;

    Displays displays;
    displays.rootWidth = geometry->width;
    displays.rootHeight = geometry->height;
    displays.main = {0, 0, geometry->width, geometry->height};
    if (monitors) {
        takeMonitors(displays, *monitors);
        displays.activeCount = static_cast<int>(displays.monitors.size());
    } else {
        displays.activeCount = 1;
    }
    displays.activeCount = count.value_or(displays.activeCount);
    return displays;
}

} // namespace glimra::desktop
