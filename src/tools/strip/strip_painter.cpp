#include "tools/strip/strip_painter.h"

#include "desktop/x11/pixel_layout.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <utility>

namespace glimra::tools {

namespace {

using desktop::Connection;

/// The application reads only the first row; a few more let people see that something is there.
constexpr std::uint16_t kHeight = 4;
/// The size of the ordinary window; a longer strip makes it wider.
constexpr int kGameWidth = 640;
constexpr std::uint16_t kGameHeight = 360;

std::unique_ptr<Connection> connect(const std::string& display) {
    if (auto connection = Connection::open(display))
        return connection;
    const char* named = display.empty() ? std::getenv("DISPLAY") : display.c_str();
    throw DisplayError(named && *named ? "cannot open the X display \"" + std::string(named) + '"'
                                       : "there is no X display: DISPLAY is not set and --display not given");
}

desktop::Area mainDisplay(Connection& connection) {
    desktop::DisplayWatch watch(connection);
    // A busy server may leave a first question unanswered.
    constexpr int kTries = 10;
    for (int i = 0; i < kTries && watch.displays().activeCount == 0; ++i)
        watch.update();
    if (watch.displays().activeCount == 0)
        throw DisplayError("the X server has no active display");
    return watch.displays().main;
}

/// `color` is 0xRRGGBB.
std::uint32_t pixelOf(std::uint32_t color, const platform::PixelFormat& format) {
    const auto channel = [color](int shift, std::uint32_t mask) {
        const std::uint32_t most = mask >> std::countr_zero(mask);
        return (((color >> shift & 0xFFU) * most + 127) / 255) << std::countr_zero(mask);
    };
    return channel(16, format.redMask) | channel(8, format.greenMask) | channel(0, format.blueMask);
}

} // namespace

StripPainter::StripPainter(const std::string& display, StripPlace place)
    : m_connection(connect(display)),
      m_place(std::move(place)) {
    const auto layout = desktop::rootPixelLayout(*xcb_get_setup(m_connection->xcb()), m_connection->screen());
    if (!layout)
        throw DisplayError("the X screen has no true colours");
    m_format = layout->format;
    createWindow();
    paint(screenlink::kDarkFrame);
}

xcb_window_t StripPainter::createGameWindow(const desktop::Area& display) {
    auto* connection = m_connection->xcb();
    const xcb_window_t window = xcb_generate_id(connection);
    const std::uint32_t black = m_connection->screen().black_pixel;
    const auto width = static_cast<std::uint16_t>(std::max(kGameWidth, m_place.left + m_place.width));
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, m_connection->root(),
                      static_cast<std::int16_t>(display.x), static_cast<std::int16_t>(display.y), width,
                      kGameHeight, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL,
                      &black);
    const auto setText = [&](xcb_atom_t property, const std::string& text) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                            static_cast<std::uint32_t>(text.size()), text.data());
    };
    // Instance and class, each with a zero behind it.
    const std::string name = m_place.windowClass + '\0';
    setText(XCB_ATOM_WM_CLASS, name + name);
    setText(XCB_ATOM_WM_NAME, m_place.windowClass);
    xcb_map_window(connection, window);
    return window;
}

void StripPainter::createWindow() {
    auto* connection = m_connection->xcb();
    const desktop::Area display = mainDisplay(*m_connection);
    if (m_place.left + m_place.width > display.width)
        throw DisplayError("the strip (left " + std::to_string(m_place.left) + ", width " +
                           std::to_string(m_place.width) + ") does not fit the display, which is " +
                           std::to_string(display.width) + " pixels wide");
    xcb_window_t parent = m_connection->root();
    int left = display.x + m_place.left;
    int top = display.y;
    if (!m_place.windowClass.empty()) {
        parent = createGameWindow(display);
        left = m_place.left;
        top = 0;
    }
    m_window = xcb_generate_id(connection);
    // No window manager shall move, frame or focus it.
    const std::uint32_t overrideRedirect = 1;
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_window, parent, static_cast<std::int16_t>(left),
                      static_cast<std::int16_t>(top), static_cast<std::uint16_t>(m_place.width), kHeight, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &overrideRedirect);
    m_graphics = xcb_generate_id(connection);
    xcb_create_gc(connection, m_graphics, m_window, 0, nullptr);
    xcb_map_window(connection, m_window);
}

void StripPainter::draw(const screenlink::StripFrame& frame, xcb_pixmap_t pixmap) {
    auto* connection = m_connection->xcb();
    const auto cells = static_cast<int>(frame.size());
    // The first pixel whose centre lies in the cell.
    const auto leftOf = [&](int cell) { return (2 * cell * m_place.width + cells) / (2 * cells); };
    for (int cell = 0; cell < cells; ++cell) {
        const std::uint32_t foreground = pixelOf(frame[static_cast<std::size_t>(cell)], m_format);
        xcb_change_gc(connection, m_graphics, XCB_GC_FOREGROUND, &foreground);
        const xcb_rectangle_t area = {static_cast<std::int16_t>(leftOf(cell)), 0,
                                      static_cast<std::uint16_t>(leftOf(cell + 1) - leftOf(cell)), kHeight};
        xcb_poly_fill_rectangle(connection, pixmap, m_graphics, 1, &area);
    }
}

void StripPainter::paint(const screenlink::StripFrame& frame) {
    auto* connection = m_connection->xcb();
    // As the window's background the frame appears at once and whole, and comes back by itself after another
    // window has covered it. A background may not be drawn on, so each frame has a pixmap of its own.
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    xcb_create_pixmap(connection, m_connection->screen().root_depth, pixmap, m_window,
                      static_cast<std::uint16_t>(m_place.width), kHeight);
    draw(frame, pixmap);
    xcb_change_window_attributes(connection, m_window, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_free_pixmap(connection, pixmap);
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection, m_window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_clear_area(connection, 0, m_window, 0, 0, 0, 0);
    finish();
}

void StripPainter::finish() {
    auto* connection = m_connection->xcb();
    std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    serveEvents();
}

void StripPainter::serveEvents() {
    while (const auto event = m_connection->pollEvent()) {
        if (event->response_type == 0) {
            const auto& error = reinterpret_cast<const xcb_generic_error_t&>(*event);
            throw DisplayError("the X server refused a request (error " + std::to_string(error.error_code) +
                               ", request " + std::to_string(error.major_code) + ")");
        }
    }
    if (m_connection->isLost())
        throw DisplayError("the X server is gone");
}

int StripPainter::fileDescriptor() const {
    return m_connection->fileDescriptor();
}

} // namespace glimra::tools
