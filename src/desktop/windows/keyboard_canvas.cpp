#include "desktop/windows/keyboard_canvas.h"

#include "desktop/windows/keyboard_canvas_accessible.h"
#include "lighting/keyboard_layout.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>

#include <cmath>

namespace glimra::desktop {

using lighting::kKeyboardLayout;

namespace {

/// Points of the layout between two places where a drag is tested; less than the narrowest key.
constexpr double kDragStep = 4.0;

QPointF centerOf(std::size_t index) {
    const lighting::KeyRect& key = kKeyboardLayout[index];
    return {key.x + key.width / 2.0, key.y + key.height / 2.0};
}

} // namespace

KeyboardCanvas::KeyboardCanvas(QWidget* parent) : QWidget(parent), m_painter({}, {}, {}) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    KeyboardCanvasAccessible::install();
}

void KeyboardCanvas::setSource(Source source) {
    m_source = std::move(source);
}

QSize KeyboardCanvas::sizeHint() const {
    return {960, static_cast<int>(960 / KeyboardPainter::aspectRatio())};
}

QSize KeyboardCanvas::minimumSizeHint() const {
    return {520, static_cast<int>(520 / KeyboardPainter::aspectRatio())};
}

void KeyboardCanvas::redraw() {
    m_source.draw([this](std::size_t index, const lighting::Color& color) {
        const auto rgb = lighting::toRgb(color);
        if (m_colors[index] == rgb)
            return;
        m_colors[index] = rgb;
        update(m_painter.reachOfKey(index));
    });
}

QRectF KeyboardCanvas::faceOfKey(lighting::KeyCode code) const {
    for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index)
        if (kKeyboardLayout[index].code == code)
            return m_painter.faceOfKey(index);
    return {};
}

// ---- mouse

void KeyboardCanvas::mousePressEvent(QMouseEvent* event) {
    if (const Index key = keyAt(event->position()); event->button() == Qt::RightButton && key && rightPressed)
        rightPressed(*key);
    if (event->button() != Qt::LeftButton || !pressed)
        return;
    m_lastPoint = m_painter.toLayout(event->position());
    pressed(*m_lastPoint);
}

void KeyboardCanvas::mouseMoveEvent(QMouseEvent* event) {
    setHovered(keyAt(event->position()));
    // A question or a closed window may have had the release.
    if (!event->buttons().testFlag(Qt::LeftButton))
        m_lastPoint.reset();
    dragTo(event->position());
}

void KeyboardCanvas::dragTo(const QPointF& point) {
    const QPointF target = m_painter.toLayout(point);
    if (!m_lastPoint || !dragged || target == *m_lastPoint)
        return;
    const QPointF way = target - *m_lastPoint;
    // A quick hand leaves keys out between two events; the way between is painted too.
    const int steps = std::max(1, static_cast<int>(std::ceil(std::hypot(way.x(), way.y()) / kDragStep)));
    for (int i = 1; i <= steps; ++i)
        dragged(*m_lastPoint + way * i / steps);
    m_lastPoint = target;
}

void KeyboardCanvas::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    // Of the events of a quick hand the last moves may be missing.
    dragTo(event->position());
    m_lastPoint.reset();
}

void KeyboardCanvas::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    setHovered(std::nullopt);
}

KeyboardCanvas::Index KeyboardCanvas::keyAt(const QPointF& point) const {
    const QPointF place = m_painter.toLayout(point);
    for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index)
        if (kKeyboardLayout[index].contains(place.x(), place.y()))
            return index;
    return std::nullopt;
}

void KeyboardCanvas::setHovered(Index key) {
    if (key == m_hovered)
        return;
    for (const Index changed : {m_hovered, key})
        if (changed)
            update(m_painter.reachOfKey(*changed));
    m_hovered = key;
}

bool KeyboardCanvas::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        if (const Index key = keyAt(help->pos()))
            QToolTip::showText(help->globalPos(), nameOfKey(*key), this,
                               m_painter.faceOfKey(*key).toAlignedRect());
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(event);
}

QString KeyboardCanvas::nameOfKey(std::size_t index) const {
    const lighting::KeyCode code = kKeyboardLayout[index].code;
    // The sign in some names is for the menus.
    const std::string_view name = lighting::displayNameOfKey(code).value_or("");
    const QString plain =
        QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())).remove(QChar(0xA9)).trimmed();
    const QString color = m_source.colorName ? m_source.colorName(code) : QString();
    return color.isEmpty() ? plain : plain + " – " + color;
}

// ---- keyboard

void KeyboardCanvas::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Left:
        return moveFocus(-1, 0);
    case Qt::Key_Right:
        return moveFocus(1, 0);
    case Qt::Key_Up:
        return moveFocus(0, 1);
    case Qt::Key_Down:
        return moveFocus(0, -1);
    case Qt::Key_Space:
        return paintKey(m_focused);
    default:
        QWidget::keyPressEvent(event);
    }
}

void KeyboardCanvas::moveFocus(int dx, int dy) {
    const QPointF here = centerOf(m_focused);
    Index best;
    double shortest = 0.0;
    for (std::size_t index = 0; index < kKeyboardLayout.size(); ++index) {
        const QPointF way = centerOf(index) - here;
        const double along = way.x() * dx + way.y() * dy;
        const double across = std::abs(way.x() * dy) + std::abs(way.y() * dx);
        // Within a cone ahead; straight on counts most.
        if (along <= 4.0 || across > 2.5 * along)
            continue;
        const double distance = along + 2.0 * across;
        if (!best || distance < shortest) {
            best = index;
            shortest = distance;
        }
    }
    if (best)
        focusKey(*best);
}

void KeyboardCanvas::focusKey(std::size_t index) {
    update(m_painter.reachOfKey(m_focused));
    m_focused = index;
    update(m_painter.reachOfKey(m_focused));
    if (hasFocus())
        sayFocus();
    else
        setFocus();
}

void KeyboardCanvas::paintKey(std::size_t index) {
    if (m_lastPoint || !pressed)
        return;
    pressed(centerOf(index));
    // Its name tells its colour.
    QAccessibleEvent renamed(this, QAccessible::NameChanged);
    renamed.setChild(static_cast<int>(index));
    QAccessible::updateAccessibility(&renamed);
}

void KeyboardCanvas::sayFocus() {
    QAccessibleEvent focused(this, QAccessible::Focus);
    focused.setChild(static_cast<int>(m_focused));
    QAccessible::updateAccessibility(&focused);
}

void KeyboardCanvas::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    sayFocus();
    update(m_painter.reachOfKey(m_focused));
}

void KeyboardCanvas::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update(m_painter.reachOfKey(m_focused));
}

// ---- drawing

void KeyboardCanvas::paintEvent(QPaintEvent* event) {
    const double ratio = devicePixelRatioF();
    if (m_body.isNull() || m_body.devicePixelRatio() != ratio) {
        m_body = QPixmap(size() * ratio);
        m_body.setDevicePixelRatio(ratio);
        m_body.fill(Qt::transparent);
        QPainter body(&m_body);
        m_painter.paintBody(body);
    }
    QPainter painter(this);
    painter.setClipRegion(event->region());
    painter.drawPixmap(0, 0, m_body);
    m_painter.paintKeys(painter, event->region(), m_colors);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_hovered)
        paintMark(painter, *m_hovered, Qt::white, 1.5);
    if (hasFocus())
        paintMark(painter, m_focused, palette().color(QPalette::Highlight), 2.5);
}

void KeyboardCanvas::paintMark(QPainter& painter, std::size_t index, const QColor& color,
                               double width) const {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, width));
    painter.drawRoundedRect(m_painter.faceOfKey(index).adjusted(-2, -2, 2, 2), 5, 5);
}

void KeyboardCanvas::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    prepareDrawing();
}

void KeyboardCanvas::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        prepareDrawing();
}

void KeyboardCanvas::prepareDrawing() {
    m_painter =
        KeyboardPainter(rect(), KeyboardTheme::forBackground(palette().color(QPalette::Window)), font());
    m_body = {};
    update();
}

} // namespace glimra::desktop
