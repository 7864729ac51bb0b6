#include "desktop/windows/keyboard_view.h"

#include <QPaintEvent>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace glimra::desktop {

using keyboards::Time;

KeyboardView::KeyboardView(keyboards::VirtualKeyboard& keyboard, std::function<Time()> now, QWidget* parent)
    : QWidget(parent),
      m_keyboard(keyboard),
      m_now(std::move(now)),
      m_painter({}, {}, {}) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName("Keyboard");
    // Effects go on by themselves, but only a call can wake a keyboard that stands still. One call may be
    // the first of a hundred; the next frame shows them all.
    m_keyboard.changed.observe([this] { scheduleAt(m_colorsTakenAt + keyboards::kFrame); });
}

QSize KeyboardView::sizeHint() const {
    return {960, heightForWidth(960)};
}

QSize KeyboardView::minimumSizeHint() const {
    return {480, heightForWidth(480)};
}

int KeyboardView::heightForWidth(int width) const {
    return static_cast<int>(std::lround(width / KeyboardPainter::aspectRatio()));
}

void KeyboardView::paintEvent(QPaintEvent* event) {
    paintBodyOnce();
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.drawPixmap(0, 0, m_body);
    m_painter.paintKeys(painter, event->region(), m_colors);
}

void KeyboardView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    prepareDrawing();
}

void KeyboardView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    takeColors();
}

void KeyboardView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_timer.stop();
}

void KeyboardView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        prepareDrawing();
}

void KeyboardView::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_timer.timerId())
        return QWidget::timerEvent(event);
    m_timer.stop();
    takeColors();
}

void KeyboardView::takeColors() {
    m_colorsTakenAt = m_now();
    const keyboards::KeyColors colors = m_keyboard.model().colorsAt(m_colorsTakenAt);
    for (std::size_t index = 0; index < colors.size(); ++index)
        if (colors[index] != m_colors[index])
            update(m_painter.reachOfKey(index));
    m_colors = colors;
    if (const std::optional<Time> next = m_keyboard.model().nextChange(m_colorsTakenAt))
        scheduleAt(std::max(*next, m_colorsTakenAt + keyboards::kFrame));
}

void KeyboardView::scheduleAt(Time moment) {
    if (!isVisible() || (m_timer.isActive() && m_timerDue <= moment))
        return;
    m_timerDue = moment;
    const auto delay = std::chrono::ceil<std::chrono::milliseconds>(moment - m_now());
    constexpr std::chrono::milliseconds kLongest = std::chrono::hours(1);
    m_timer.start(static_cast<int>(std::clamp(delay, {}, kLongest).count()), Qt::PreciseTimer, this);
}

void KeyboardView::prepareDrawing() {
    m_painter =
        KeyboardPainter(rect(), KeyboardTheme::forBackground(palette().color(QPalette::Window)), font());
    m_body = {};
    update();
}

void KeyboardView::paintBodyOnce() {
    const double ratio = devicePixelRatioF();
    if (!m_body.isNull() && m_body.devicePixelRatio() == ratio)
        return;
    m_body = QPixmap(size() * ratio);
    m_body.setDevicePixelRatio(ratio);
    m_body.fill(Qt::transparent);
    QPainter painter(&m_body);
    m_painter.paintBody(painter);
}

} // namespace glimra::desktop
