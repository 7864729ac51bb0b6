#include "desktop/windows/color_wheel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace glimra::desktop {

ColorWheel::ColorWheel(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName("Hue and saturation");
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

void ColorWheel::setChoice(const Choice& choice) {
    m_choice = choice;
    update();
}

void ColorWheel::setBrightness(float brightness) {
    m_brightness = brightness;
    update();
}

QRectF ColorWheel::disk() const {
    const double side = std::min(width(), height()) - 8.0;
    QRectF disk(0, 0, side, side);
    disk.moveCenter(QRectF(rect()).center());
    return disk;
}

void ColorWheel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF area = disk();
    QConicalGradient hues(area.center(), 0);
    for (int step = 0; step <= 6; ++step)
        hues.setColorAt(step / 6.0, QColor::fromHsvF(static_cast<float>(step % 6) / 6.0F, 1, m_brightness));
    QRadialGradient fade(area.center(), area.width() / 2);
    QColor center = QColor::fromRgbF(m_brightness, m_brightness, m_brightness);
    fade.setColorAt(0, center);
    center.setAlpha(0);
    fade.setColorAt(1, center);
    painter.setPen(Qt::NoPen);
    for (const QGradient* const gradient : std::initializer_list<const QGradient*>{&hues, &fade}) {
        painter.setBrush(*gradient);
        painter.drawEllipse(area);
    }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(
        QPen(palette().color(hasFocus() ? QPalette::Highlight : QPalette::Mid), hasFocus() ? 2.5 : 1));
    painter.drawEllipse(area.adjusted(-2, -2, 2, 2));

    const double angle = m_choice.hue * 2 * std::numbers::pi;
    const double radius = m_choice.saturation * area.width() / 2;
    const QPointF mark = area.center() + QPointF(std::cos(angle), -std::sin(angle)) * radius;
    // One of the two can be seen on every colour.
    for (const auto& [color, width] : {std::pair{Qt::black, 4.0}, {Qt::white, 2.0}}) {
        painter.setPen(QPen(color, width));
        painter.drawEllipse(mark, 6, 6);
    }
}

void ColorWheel::mousePressEvent(QMouseEvent* event) {
    chooseAt(event->position());
}

void ColorWheel::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons().testFlag(Qt::LeftButton))
        chooseAt(event->position());
}

void ColorWheel::keyPressEvent(QKeyEvent* event) {
    constexpr float kHueStep = 1.0F / 72;
    constexpr float kSaturationStep = 0.05F;
    switch (event->key()) {
    case Qt::Key_Left:
        return choose({m_choice.hue + kHueStep, m_choice.saturation});
    case Qt::Key_Right:
        return choose({m_choice.hue - kHueStep, m_choice.saturation});
    case Qt::Key_Up:
        return choose({m_choice.hue, m_choice.saturation + kSaturationStep});
    case Qt::Key_Down:
        return choose({m_choice.hue, m_choice.saturation - kSaturationStep});
    default:
        QWidget::keyPressEvent(event);
    }
}

void ColorWheel::chooseAt(const QPointF& point) {
    const QPointF way = point - disk().center();
    const double turn = std::atan2(-way.y(), way.x()) / (2 * std::numbers::pi);
    choose(
        {static_cast<float>(turn), static_cast<float>(std::hypot(way.x(), way.y()) / (disk().width() / 2))});
}

void ColorWheel::choose(const Choice& choice) {
    setChoice({choice.hue - std::floor(choice.hue), std::clamp(choice.saturation, 0.0F, 1.0F)});
    if (chosen)
        chosen(m_choice);
}

} // namespace glimra::desktop
