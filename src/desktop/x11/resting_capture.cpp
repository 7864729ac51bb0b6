#include "desktop/x11/resting_capture.h"

namespace glimra::desktop {

namespace {

constexpr platform::Duration kWakefulTime = std::chrono::seconds(10);

} // namespace

RestingCapture::RestingCapture(const std::string& displayName, CaptureChoice choice,
                               platform::RunLoop& runLoop)
    : m_runLoop(runLoop),
      m_capture(displayName, choice) {
    awake();
}

RestingCapture::~RestingCapture() {
    if (m_timer)
        m_runLoop.cancel(*m_timer);
}

int RestingCapture::activeDisplayCount() {
    return awake().activeDisplayCount();
}

std::optional<platform::Image> RestingCapture::capture(const platform::ScreenRect& rect) {
    return awake().capture(rect);
}

X11ScreenCapture& RestingCapture::awake() {
    m_lastUse = m_runLoop.now();
    if (!m_timer)
        m_timer = m_runLoop.after(kWakefulTime, [this] { restOrWait(); });
    return m_capture;
}

void RestingCapture::restOrWait() {
    m_timer.reset();
    const platform::Time restAt = m_lastUse + kWakefulTime;
    if (m_runLoop.now() >= restAt)
        m_capture.rest();
    else
        m_timer = m_runLoop.after(restAt - m_runLoop.now(), [this] { restOrWait(); });
}

} // namespace glimra::desktop
