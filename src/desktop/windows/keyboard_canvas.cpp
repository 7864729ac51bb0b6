#include "desktop/windows/keyboard_canvas.h"

#include "desktop/windows/key_name.h"
#include "desktop/windows/keyboard_canvas_accessible.h"
#include "lighting/keyboard_layout.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>

#include <cmath>
#include <utility>

namespace glimra::desktop {

using lighting::kKeyboardLayout;

namespace {

/// Points between two places where a drag is tested; less than the narrowest key.
constexpr double kDragStep = 4.0;

QPointF centerOf(std::size_t index) {
    const lighting::KeyRect& key = kKeyboardLayout[index];
    return {key.x + key.width / 2.0, key.y + key.height / 2.0};
}

} // namespace

KeyboardCanvas::KeyboardCanvas(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
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
            return m_painter.capOfKey(index);
    return {};
}

// ---- mouse

void KeyboardCanvas::mousePressEvent(QMouseEvent* event) {
    if (const Index key = keyAt(event->position()); event->button() == Qt::RightButton && key && rightPressed)
        rightPressed(*key);
    if (event->button() != Qt::LeftButton || !pressed)
        return;
    m_lastPoint = event->position();
    if (const Index key = keyAt(event->position()))
        focusKey(*key);
    pressed(placeOf(event->position()));
}

QPointF KeyboardCanvas::placeOf(const QPointF& point) const {
    const Index key = keyAt(point);
    return key ? centerOf(*key) : m_painter.toLayout(point);
}

void KeyboardCanvas::mouseMoveEvent(QMouseEvent* event) {
    setHovered(keyAt(event->position()));
    // A question or a closed window may have had the release.
    if (!event->buttons().testFlag(Qt::LeftButton))
        m_lastPoint.reset();
    dragTo(event->position());
}

void KeyboardCanvas::dragTo(const QPointF& target) {
    if (!m_lastPoint || !dragged || target == *m_lastPoint)
        return;
    const QPointF way = target - *m_lastPoint;
    // A quick hand leaves keys out between two events; the way between is painted too.
    const int steps = std::max(1, static_cast<int>(std::ceil(std::hypot(way.x(), way.y()) / kDragStep)));
    for (int i = 1; i <= steps; ++i)
        dragged(placeOf(*m_lastPoint + way * i / steps));
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
    return m_painter.keyAt(point);
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
                               m_painter.capOfKey(*key).toAlignedRect());
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(event);
}

QString KeyboardCanvas::nameOfKey(std::size_t index) const {
    const lighting::KeyCode code = kKeyboardLayout[index].code;
    const QString plain = plainKeyName(code);
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
    if (!m_painter.isFor(devicePixelRatioF()))
        prepareDrawing();
    QPainter painter(this);
    painter.setClipRegion(event->region());
    m_painter.paint(painter, event->region(), m_colors);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_hovered)
        paintMark(painter, *m_hovered, 1.5);
    if (hasFocus())
        paintMark(painter, m_focused, 3.0);
}

void KeyboardCanvas::paintMark(QPainter& painter, std::size_t index, double width) const {
    // Of a light and a dark line, one stands out from any color.
    const QRectF cap = m_painter.capOfKey(index);
    painter.setBrush(Qt::NoBrush);
    for (const auto& [color, inset] :
         {std::pair(QColor("#0c0d0f"), width * 1.5), {QColor("#ffffff"), width * 0.5}}) {
        painter.setPen(QPen(color, width));
        painter.drawRoundedRect(cap.adjusted(inset, inset, -inset, -inset), 4, 4);
    }
}

void KeyboardCanvas::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    prepareDrawing();
}

void KeyboardCanvas::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    // Its pictures are made anew when it is shown.
    if (!event->spontaneous())
        m_painter = {};
}

void KeyboardCanvas::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange)
        prepareDrawing();
}

void KeyboardCanvas::prepareDrawing() {
    m_painter = KeyboardPainter(size(), devicePixelRatioF(),
                                KeyboardTheme::forBackground(palette().color(QPalette::Window)), font(),
                                KeyLook::Painted);
    update();
}

} // namespace glimra::desktop
