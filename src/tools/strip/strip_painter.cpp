#include "tools/strip/strip_painter.h"

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include <bit>
#include <cstdlib>
#include <optional>

namespace glimra::tools {

namespace {

/// The application reads only the first row; a few more let people see that something is there.
constexpr std::uint16_t kHeight = 4;

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;
template <typename Reply>
ReplyPointer<Reply> own(Reply* reply) {
    return ReplyPointer<Reply>(reply);
}

struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
};

xcb_screen_t* screenAt(xcb_connection_t* connection, int number) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 0 && number > 0; --number)
        xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data : nullptr;
}

const xcb_visualtype_t* visualOf(const xcb_screen_t& screen) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths))
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals))
            if (visuals.data->visual_id == screen.root_visual)
                return visuals.data;
    return nullptr;
}

/// The primary monitor, or where none is marked the one nearest to the top left corner.
std::optional<Area> mainMonitor(xcb_connection_t* connection, xcb_window_t root) {
    const auto version =
        own(xcb_randr_query_version_reply(connection, xcb_randr_query_version(connection, 1, 5), nullptr));
    const auto reply =
        own(xcb_randr_get_monitors_reply(connection, xcb_randr_get_monitors(connection, root, 1), nullptr));
    if (!version || !reply)
        return std::nullopt;
    const xcb_randr_monitor_info_t* best = nullptr;
    for (auto monitors = xcb_randr_get_monitors_monitors_iterator(reply.get()); monitors.rem > 0;
         xcb_randr_monitor_info_next(&monitors)) {
        const auto* monitor = monitors.data;
        if (monitor->primary) {
            best = monitor;
            break;
        }
        if (!best || monitor->x + monitor->y < best->x + best->y)
            best = monitor;
    }
    if (!best)
        return std::nullopt;
    return Area{best->x, best->y, best->width};
}

Area mainDisplay(xcb_connection_t* connection, const xcb_screen_t& screen) {
    const auto* randr = xcb_get_extension_data(connection, &xcb_randr_id);
    if (!randr || !randr->present)
        return {0, 0, screen.width_in_pixels};
    if (const auto monitor = mainMonitor(connection, screen.root))
        return *monitor;
    throw DisplayError("the X server has no active display");
}

std::uint32_t scaledTo(std::uint32_t mask, std::uint8_t component) {
    const std::uint32_t most = mask >> std::countr_zero(mask);
    return ((component * most + 127) / 255) << std::countr_zero(mask);
}

} // namespace

void StripPainter::Disconnect::operator()(xcb_connection_t* connection) const {
    xcb_disconnect(connection);
}

StripPainter::StripPainter(const std::string& display, StripPlace place) : m_place(place) {
    int screenNumber = 0;
    m_connection.reset(xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber));
    if (xcb_connection_has_error(m_connection.get())) {
        const char* named = display.empty() ? std::getenv("DISPLAY") : display.c_str();
        throw DisplayError(named && *named
                               ? "cannot open the X display \"" + std::string(named) + "\""
                               : "there is no X display: DISPLAY is not set and --display not given");
    }
    const xcb_screen_t* screen = screenAt(m_connection.get(), screenNumber);
    const xcb_visualtype_t* visual = screen ? visualOf(*screen) : nullptr;
    if (!visual || !visual->red_mask || !visual->green_mask || !visual->blue_mask)
        throw DisplayError("the X screen has no true colours");
    m_masks = {visual->red_mask, visual->green_mask, visual->blue_mask};
    m_depth = screen->root_depth;
    createWindow(*screen);
    paint(kDarkFrame);
}

void StripPainter::createWindow(const xcb_screen_t& screen) {
    auto* connection = m_connection.get();
    const Area display = mainDisplay(connection, screen);
    if (m_place.left + m_place.width > display.width)
        throw DisplayError("the strip (left " + std::to_string(m_place.left) + ", width " +
                           std::to_string(m_place.width) + ") does not fit the display, which is " +
                           std::to_string(display.width) + " pixels wide");
    m_window = xcb_generate_id(connection);
    // No window manager shall move, frame or focus it.
    const std::uint32_t overrideRedirect = 1;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_window, screen.root,
                      static_cast<std::int16_t>(display.x + m_place.left),
                      static_cast<std::int16_t>(display.y), static_cast<std::uint16_t>(m_place.width),
                      kHeight, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT, &overrideRedirect);
    m_graphics = xcb_generate_id(connection);
    xcb_create_gc(connection, m_graphics, m_window, 0, nullptr);
    xcb_map_window(connection, m_window);
}

std::uint32_t StripPainter::pixelOf(Rgb color) const {
    return scaledTo(m_masks.red, color.red) | scaledTo(m_masks.green, color.green) |
           scaledTo(m_masks.blue, color.blue);
}

void StripPainter::draw(const StripFrame& frame, xcb_pixmap_t pixmap) {
    const auto cells = static_cast<int>(frame.size());
    // The first pixel whose centre lies in the cell.
    const auto leftOf = [&](int cell) { return (2 * cell * m_place.width + cells) / (2 * cells); };
    for (int cell = 0; cell < cells; ++cell) {
        const std::uint32_t foreground = pixelOf(frame[static_cast<std::size_t>(cell)]);
        xcb_change_gc(m_connection.get(), m_graphics, XCB_GC_FOREGROUND, &foreground);
        const xcb_rectangle_t area = {static_cast<std::int16_t>(leftOf(cell)), 0,
                                      static_cast<std::uint16_t>(leftOf(cell + 1) - leftOf(cell)), kHeight};
        xcb_poly_fill_rectangle(m_connection.get(), pixmap, m_graphics, 1, &area);
    }
}

void StripPainter::paint(const StripFrame& frame) {
    auto* connection = m_connection.get();
    // As the window's background the frame appears at once and whole, and comes back by itself after another
    // window has covered it. A background may not be drawn on, so each frame has a pixmap of its own.
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    xcb_create_pixmap(connection, m_depth, pixmap, m_window, static_cast<std::uint16_t>(m_place.width),
                      kHeight);
    draw(frame, pixmap);
    xcb_change_window_attributes(connection, m_window, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_free_pixmap(connection, pixmap);
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection, m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_clear_area(connection, 0, m_window, 0, 0, 0, 0);
    finish();
}

void StripPainter::finish() {
    own(xcb_get_input_focus_reply(m_connection.get(), xcb_get_input_focus(m_connection.get()), nullptr));
    serveEvents();
}

void StripPainter::serveEvents() {
    while (const auto event = own(xcb_poll_for_event(m_connection.get()))) {
        if (event->response_type == 0) {
            const auto& error = reinterpret_cast<const xcb_generic_error_t&>(*event);
            throw DisplayError("the X server refused a request (error " + std::to_string(error.error_code) +
                               ", request " + std::to_string(error.major_code) + ")");
        }
    }
    if (xcb_connection_has_error(m_connection.get()))
        throw DisplayError("the X server is gone");
}

int StripPainter::fileDescriptor() const {
    return xcb_get_file_descriptor(m_connection.get());
}

} // namespace glimra::tools
