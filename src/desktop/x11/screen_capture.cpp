#include "desktop/x11/screen_capture.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace glimra::desktop {

namespace {

constexpr platform::Duration kConnectPatience = std::chrono::seconds(1);

} // namespace

X11ScreenCapture::X11ScreenCapture(const std::string& displayName) : m_connector(displayName) {
    useConnection(m_connector.connect(kConnectPatience));
}

int X11ScreenCapture::activeDisplayCount() {
    const Displays* displays = currentDisplays();
    return displays == nullptr ? 0 : displays->activeCount;
}

std::optional<platform::Image> X11ScreenCapture::capture(const platform::ScreenRect& rect) {
    const Displays* displays = currentDisplays();
    if (displays == nullptr || displays->activeCount == 0 || !m_layout || m_connection->isSilent())
        return std::nullopt;

    // The server refuses a rectangle that reaches beyond the root window by a single pixel.
    const Area& main = displays->main;
    const auto columns = visibleSpan(rect.x, rect.width, std::max(0, -main.x),
                                     std::min(main.width, displays->rootWidth - main.x));
    const auto rows = visibleSpan(rect.y, rect.height, std::max(0, -main.y),
                                  std::min(main.height, displays->rootHeight - main.y));
    if (!columns || !rows)
        return std::nullopt;

    const auto reply = m_connection->reply<xcb_get_image_reply_t>(xcb_get_image(
        m_connection->xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, m_connection->root(),
        static_cast<std::int16_t>(main.x + columns->first), static_cast<std::int16_t>(main.y + rows->first),
        static_cast<std::uint16_t>(columns->count), 1, ~0u));
    if (!reply)
        return std::nullopt;
    const auto length = static_cast<std::size_t>(xcb_get_image_data_length(reply.get()));
    auto pixels = unpackPixels({xcb_get_image_data(reply.get()), length},
                               static_cast<std::size_t>(columns->count), *m_layout);
    if (!pixels)
        return std::nullopt;
    return platform::Image{*std::move(pixels), m_layout->format, columns->skipped};
}

std::uint64_t X11ScreenCapture::bytesSent() const {
    return m_connection ? xcb_total_written(m_connection->xcb()) : 0;
}

void X11ScreenCapture::useConnection(std::unique_ptr<Connection> connection) {
    m_displayWatch.reset();
    m_layout.reset();
    m_connection = std::move(connection);
    if (!m_connection)
        return;
    m_layout = rootPixelLayout(*xcb_get_setup(m_connection->xcb()), m_connection->screen());
    m_displayWatch.emplace(*m_connection);
    // A watch that could not find out how to follow the displays would miss their changes for ever.
    if (m_connection->isSilent())
        useConnection(nullptr);
}

const Displays* X11ScreenCapture::currentDisplays() {
    if (!m_connection)
        useConnection(m_connector.retry(monotonicNow()));
    if (!m_connection)
        return nullptr;
    if (!m_connection->isSilent())
        m_displayWatch->update();
    if (!m_connection->isLost())
        return &m_displayWatch->displays();
    useConnection(nullptr);
    return nullptr;
}

std::optional<VisibleSpan> visibleSpan(double begin, double length, int low, int high) {
    // Bounds of all sizes come in, infinite ones and NaN too: nothing is made an integer before it is known
    // to lie on the screen.
    const double begins = std::ceil(begin - 0.5);
    const double first = std::max(begins, static_cast<double>(low));
    const double end = std::min(std::ceil(begin + length - 0.5), static_cast<double>(high));
    const double skipped = first - begins;
    if (!(first < end) || !(skipped <= std::numeric_limits<int>::max()))
        return std::nullopt;
    return VisibleSpan{static_cast<int>(first), static_cast<int>(end - first), static_cast<int>(skipped)};
}

} // namespace glimra::desktop
