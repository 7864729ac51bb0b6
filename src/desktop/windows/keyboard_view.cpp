#include "desktop/windows/keyboard_view.h"

#include "desktop/windows/keyboard_view_accessible.h"

#include <QHideEvent>
#include <QPaintEvent>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace glimra::desktop {

using keyboards::Time;

KeyboardView::KeyboardView(keyboards::VirtualKeyboard& keyboard, std::function<Time()> now, QWidget* parent)
    : QWidget(parent),
      m_keyboard(keyboard),
      m_now(std::move(now)),
      m_visibility(*this, [this] { takeColors(); }) {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setAccessibleName("Keyboard");
    // The picture has no holes, so nothing needs to be painted below it.
    setAttribute(Qt::WA_OpaquePaintEvent);
    installKeyboardViewAccessible();
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

void KeyboardView::showUntilLit(const keyboards::KeyColors& colors) {
    constexpr int kDimmed = 3; // of 8
    m_untilLit = colors;
    for (keyboards::Rgb& color : *m_untilLit)
        for (std::uint8_t* channel : {&color.red, &color.green, &color.blue})
            *channel = static_cast<std::uint8_t>(*channel * kDimmed / 8);
    takeColors();
}

void KeyboardView::paintEvent(QPaintEvent* event) {
    if (std::exchange(m_isOutdated, false) || !m_painter.isFor(devicePixelRatioF()))
        m_painter = KeyboardPainter(size(), devicePixelRatioF(),
                                    KeyboardTheme::forBackground(palette().color(QPalette::Window)), font(),
                                    KeyLook::Lit);
    QPainter painter(this);
    painter.setClipRegion(event->region());
    m_painter.paint(painter, event->region(), m_colors);
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
    // Its pictures are some megabytes, which a program that waits in the tray for an evening need not hold.
    if (!event->spontaneous())
        m_painter = {};
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
    if (!m_visibility.isSeen())
        return;
    m_colorsTakenAt = m_now();
    const keyboards::KeyColors colors = colorsToShow(m_colorsTakenAt);
    for (std::size_t index = 0; index < colors.size(); ++index)
        if (colors[index] != m_colors[index])
            update(m_painter.reachOfKey(index));
    m_colors = colors;
    if (const std::optional<Time> next = m_keyboard.model().nextChange(m_colorsTakenAt))
        scheduleAt(std::max(*next, m_colorsTakenAt + keyboards::kFrame));
}

void KeyboardView::scheduleAt(Time moment) {
    if (!m_visibility.isSeen() || (m_timer.isActive() && m_timerDue <= moment))
        return;
    m_timerDue = moment;
    const auto delay = std::chrono::ceil<std::chrono::milliseconds>(moment - m_now());
    constexpr std::chrono::milliseconds kLongest = std::chrono::hours(1);
    m_timer.start(static_cast<int>(std::clamp(delay, {}, kLongest).count()), Qt::PreciseTimer, this);
}

keyboards::KeyColors KeyboardView::colorsToShow(Time now) {
    const keyboards::KeyColors colors = m_keyboard.model().colorsAt(now);
    if (m_untilLit && colors == keyboards::KeyColors{})
        return *m_untilLit;
    m_untilLit.reset();
    return colors;
}

void KeyboardView::prepareDrawing() {
    m_isOutdated = true;
    update();
}

} // namespace glimra::desktop
