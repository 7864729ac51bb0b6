#include "desktop/x11/screen_capture.h"

#include "platform/monotonic_clock.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>

namespace glimra::desktop {

namespace {

/// Only $DISPLAY is known to belong to the session; for a display given by name, only its server can tell.
bool isInWayland(const std::string& displayName) {
    const char* socket = std::getenv("WAYLAND_DISPLAY");
    return displayName.empty() && socket != nullptr && *socket != '\0';
}

bool contains(const Area& area, const Place& place) {
    return place.x >= area.x && place.x < area.x + area.width && place.y >= area.y &&
           place.y < area.y + area.height;
}

/// The first pixel of each point; `skipped` pixels lie before the first of them.
std::vector<std::uint32_t> everyNth(std::vector<std::uint32_t> pixels, int skipped, int scale) {
    if (scale == 1)
        return pixels;
    std::vector<std::uint32_t> chosen;
    const auto step = static_cast<std::size_t>(scale);
    const auto before = static_cast<std::size_t>(skipped);
    for (std::size_t i = (step - before % step) % step; i < pixels.size(); i += step)
        chosen.push_back(pixels[i]);
    return chosen;
}

} // namespace

X11ScreenCapture::X11ScreenCapture(const std::string& displayName, CaptureChoice choice,
                                   std::function<void(CaptureState)> changed)
    : m_connector(displayName),
      m_choice(choice),
      m_isInWayland(isInWayland(displayName)),
      m_changed(std::move(changed)) {
    useConnection(m_connector.connect(kConnectPatience));
    // Queries the displays now, so that the first capture needs no other request.
    currentDisplays();
    if (m_state == CaptureState::NoServer && m_changed)
        m_changed(m_state);
}

int X11ScreenCapture::activeDisplayCount() {
    const Displays* displays = currentDisplays();
    return displays == nullptr ? 0 : displays->activeCount;
}

std::optional<platform::Image> X11ScreenCapture::capture(const platform::ScreenRect& rect) {
    const Displays* displays = currentDisplays();
    if (displays == nullptr || displays->activeCount == 0 || m_connection->isSilent())
        return std::nullopt;
    const auto from = source(*displays);
    if (!from)
        return std::nullopt;
    // The server refuses a rectangle that extends beyond the drawable, even by one pixel.
    const int scale = m_pixelsPerPoint;
    const auto columns = visibleSpan(rect.x * scale, rect.width * scale, from->low.x, from->high.x);
    const auto rows = visibleSpan(rect.y * scale, rect.height * scale, from->low.y, from->high.y);
    if (!columns || !rows)
        return std::nullopt;

    const auto reply = m_connection->reply<xcb_get_image_reply_t>(
        xcb_get_image(m_connection->xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, from->drawable,
                      static_cast<std::int16_t>(from->origin.x + columns->first),
                      static_cast<std::int16_t>(from->origin.y + rows->first),
                      static_cast<std::uint16_t>(columns->count), 1, ~0u));
    if (!reply)
        return std::nullopt;
    const std::optional<PixelLayout>& layout = layoutOf(reply->visual);
    if (!layout)
        return std::nullopt;
    const auto length = static_cast<std::size_t>(xcb_get_image_data_length(reply.get()));
    auto pixels = unpackPixels({xcb_get_image_data(reply.get()), length},
                               static_cast<std::size_t>(columns->count), *layout);
    if (!pixels)
        return std::nullopt;
    return platform::Image{everyNth(*std::move(pixels), columns->skipped, scale), layout->format,
                           (columns->skipped + scale - 1) / scale};
}

void X11ScreenCapture::rest() {
    useConnection(nullptr);
}

std::uint64_t X11ScreenCapture::bytesSent() const {
    return m_connection ? xcb_total_written(m_connection->xcb()) : 0;
}

void X11ScreenCapture::useConnection(std::unique_ptr<Connection> connection) {
    m_windowWatch.reset();
    m_displayWatch.reset();
    m_visual = XCB_NONE;
    m_connection = std::move(connection);
    if (!m_connection)
        return;
    m_displayWatch.emplace(*m_connection);
    chooseWay();
    // If the server was silent, the watch does not know how to follow the displays and would miss all their
    // changes.
    if (m_connection->isSilent())
        useConnection(nullptr);
}

void X11ScreenCapture::chooseWay() {
    const auto answer = m_connection->answer<xcb_get_image_reply_t>(
        xcb_get_image(m_connection->xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_connection->root(), 0, 0, 1, 1, ~0u));
    m_screenIsRefused = answer.errorCode == XCB_MATCH;
    m_capturesWindow = m_choice == CaptureChoice::Window ||
                       (m_choice == CaptureChoice::Automatic && (m_isInWayland || m_screenIsRefused));
}

const Displays* X11ScreenCapture::currentDisplays() {
    if (!m_connection)
        useConnection(m_connector.retry(platform::monotonicNow()));
    if (m_connection && !m_connection->isSilent()) {
        while (const auto event = m_connection->pollEvent()) {
            m_displayWatch->take(*event);
            if (m_windowWatch)
                m_windowWatch->take(*event);
        }
        m_displayWatch->refresh();
        followWindows();
    }
    if (m_connection && m_connection->isLost())
        useConnection(nullptr);
    tellState();
    return m_connection ? &m_displayWatch->displays() : nullptr;
}

void X11ScreenCapture::followWindows() {
    if (!m_windowWatch && (m_capturesWindow || m_displayWatch->displays().monitors.size() > 1))
        m_windowWatch.emplace(*m_connection, DisplayWatch::kRootEvents);
    if (m_windowWatch)
        m_windowWatch->refresh(platform::monotonicNow());
}

void X11ScreenCapture::tellState() {
    const CaptureState state = currentState();
    if (m_state.exchange(state) != state && m_changed)
        m_changed(state);
}

CaptureState X11ScreenCapture::currentState() const {
    if (!m_connection)
        return CaptureState::NoServer;
    if (m_capturesWindow)
        return m_windowWatch && m_windowWatch->window() ? CaptureState::Window : CaptureState::NoWindow;
    return m_screenIsRefused ? CaptureState::ScreenRefused : CaptureState::Screen;
}

std::optional<X11ScreenCapture::Source> X11ScreenCapture::source(const Displays& displays) {
    if (m_capturesWindow) {
        const auto window = m_windowWatch ? m_windowWatch->window() : std::nullopt;
        if (!window)
            return std::nullopt;
        return Source{window->id, {0, 0}, {0, 0}, {window->width, window->height}};
    }
    const Area area = displayOfGame(displays);
    return Source{m_connection->root(),
                  {area.x, area.y},
                  {std::max(0, -area.x), std::max(0, -area.y)},
                  {std::min(area.width, displays.rootWidth - area.x),
                   std::min(area.height, displays.rootHeight - area.y)}};
}

Area X11ScreenCapture::displayOfGame(const Displays& displays) {
    if (displays.monitors.size() < 2 || !m_windowWatch)
        return displays.main;
    const auto place = m_windowWatch->topMiddle();
    const auto& monitors = displays.monitors;
    const auto hasPlace = [&place](const Area& area) { return place && contains(area, *place); };
    // Mirrored displays overlap; then the main one is preferred.
    if (hasPlace(displays.main))
        return displays.main;
    const auto found = std::find_if(monitors.begin(), monitors.end(), hasPlace);
    return found == monitors.end() ? displays.main : *found;
}

const std::optional<PixelLayout>& X11ScreenCapture::layoutOf(xcb_visualid_t visual) {
    if (visual != m_visual) {
        m_visual = visual;
        m_layout = pixelLayout(*xcb_get_setup(m_connection->xcb()), m_connection->screen(), visual);
    }
    return m_layout;
}

std::optional<VisibleSpan> visibleSpan(double begin, double length, int low, int high) {
    // The bounds may have any value, including infinity and NaN, so nothing is converted to an integer before
    // it is known to lie on the screen.
    const double begins = std::ceil(begin - 0.5);
    const double first = std::max(begins, static_cast<double>(low));
    const double end = std::min(std::ceil(begin + length - 0.5), static_cast<double>(high));
    const double skipped = first - begins;
    if (!(first < end) || !(skipped <= std::numeric_limits<int>::max()))
        return std::nullopt;
    return VisibleSpan{static_cast<int>(first), static_cast<int>(end - first), static_cast<int>(skipped)};
}

} // namespace glimra::desktop
