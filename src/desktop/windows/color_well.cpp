#include "desktop/windows/color_well.h"

#include "desktop/windows/color_editor.h"
#include "desktop/windows/keyboard_painter.h"
#include "desktop/windows/paint_button.h"
#include "desktop/windows/qt_colors.h"

#include <QHideEvent>
#include <QPainter>

namespace glimra::desktop {

namespace {

/// Lying in a square of side 1, from its point at the lower left.
void paintPencil(QPainter& painter, const QRectF& square, const QColor& color) {
    painter.save();
    painter.translate(square.topLeft());
    painter.scale(square.width(), square.height());
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(QPolygonF{{0.08, 0.92}, {0.16, 0.64}, {0.36, 0.84}});
    painter.drawPolygon(QPolygonF{{0.22, 0.58}, {0.66, 0.14}, {0.86, 0.34}, {0.42, 0.78}});
    painter.restore();
}

} // namespace

ColorWell::ColorWell(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] { openEditor(); });
}

void ColorWell::setColor(const platform::Color& color) {
    if (color == m_color)
        return;
    closeEditor();
    m_color = color;
    update();
}

QColor ColorWell::color() const {
    return toQColor(m_color);
}

QSize ColorWell::sizeHint() const {
    const int side = PaintButton::sideFor(fontMetrics());
    return {side, showsColor() ? side : side / 2};
}

void ColorWell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF outer = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    if (hasFocus() || underMouse()) {
        painter.setPen(hasFocus() ? QPen(palette().color(QPalette::Highlight), 2.0) : QPen(Qt::NoPen));
        painter.setBrush(palette().color(QPalette::Button));
        painter.drawRoundedRect(outer, 5, 5);
    }
    QColor pencil = palette().color(QPalette::WindowText);
    pencil.setAlphaF(hasFocus() || underMouse() ? 1.0F : 0.55F);
    if (showsColor()) {
        PaintButton::paintFace(painter, outer.adjusted(3.5, 3.5, -3.5, -3.5), color(), palette());
        pencil = KeyboardPainter::legendOn(color());
    }
    const double side = PaintButton::sideFor(fontMetrics()) * 0.34;
    QRectF square(0, 0, side, side);
    square.moveCenter(outer.center());
    paintPencil(painter, square, pencil);
}

void ColorWell::hideEvent(QHideEvent* event) {
    QAbstractButton::hideEvent(event);
    // Another desktop or a minimized window is no reason.
    if (!event->spontaneous())
        closeEditor();
}

void ColorWell::openEditor() {
    auto* const editor = ColorEditor::of(window());
    if (editor == nullptr)
        return;
    editor->close(this);
    if (opened)
        opened();
    const QString title = property("title").toString();
    editor->open({.owner = this,
                  .title = title,
                  .ownName = m_ownName,
                  .color = color(),
                  .picked =
                      [this](const QColor& chosen) {
                          // The editor begins with the colour as bytes, which is no choice yet.
                          if (chosen.rgb() != color().rgb())
                              take(fromQColor(chosen));
                      },
                  .named =
                      [this](const QString& name) {
                          if (named)
                              named(name);
                      },
                  .cancelled =
                      [this, before = m_color] {
                          if (m_color == before)
                              return;
                          m_color = before;
                          update();
                          if (restored)
                              restored(before);
                      }});
}

void ColorWell::closeEditor() {
    if (auto* const editor = ColorEditor::of(window()))
        editor->close(this);
}

void ColorWell::take(const platform::Color& color) {
    m_color = color;
    update();
    if (picked)
        picked(color);
}

} // namespace glimra::desktop
