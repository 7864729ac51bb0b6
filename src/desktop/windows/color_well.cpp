#include "desktop/windows/color_well.h"

#include <QPainter>

namespace glimra::desktop {

namespace {

/// Closes a dialog whose colour no longer counts, not even the one that its Cancel would bring back.
void discard(QColorDialog* dialog) {
    dialog->disconnect();
    dialog->hide();
    dialog->deleteLater();
}

} // namespace

ColorWell::ColorWell(QWidget* parent) : QAbstractButton(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] { openDialog(); });
}

void ColorWell::setColor(const QColor& color) {
    if (color.rgb() == m_color.rgb())
        return;
    if (m_dialog)
        discard(m_dialog);
    m_color = color;
    update();
}

QSize ColorWell::sizeHint() const {
    return {std::max(40, fontMetrics().height() * 2), std::max(20, fontMetrics().height() + 4)};
}

void ColorWell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF outer = QRectF(rect()).adjusted(1, 1, -1, -1);
    QColor rim = palette().color(hasFocus() ? QPalette::Highlight : QPalette::WindowText);
    rim.setAlphaF(hasFocus() ? 1.0F : 0.4F);
    painter.setPen(QPen(rim, hasFocus() ? 2.0 : 1.0));
    painter.setBrush(palette().color(QPalette::Button));
    painter.drawRoundedRect(outer, 5, 5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_color);
    painter.drawRoundedRect(outer.adjusted(3, 3, -3, -3), 3, 3);
}

void ColorWell::openDialog() {
    // One at a time, as there is one colour to think about.
    for (QColorDialog* const other : window()->findChildren<QColorDialog*>())
        discard(other);
    const QColor before = m_color;
    m_dialog = new QColorDialog(m_color, window());
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setWindowTitle(accessibleName());
    m_dialog->setOption(QColorDialog::DontUseNativeDialog);
    connect(m_dialog, &QColorDialog::currentColorChanged, this, [this](const QColor& color) { take(color); });
    connect(m_dialog, &QDialog::rejected, this, [this, before] { take(before); });
    m_dialog->show();
}

void ColorWell::take(const QColor& color) {
    if (color.rgb() == m_color.rgb())
        return;
    m_color = color;
    update();
    if (picked)
        picked(color);
}

} // namespace glimra::desktop
