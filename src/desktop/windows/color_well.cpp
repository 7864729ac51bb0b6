#include "desktop/windows/color_well.h"

#include "desktop/windows/qt_colors.h"

#include <QHideEvent>
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

void ColorWell::setColor(const platform::Color& color) {
    if (color == m_color)
        return;
    closeDialog();
    m_color = color;
    update();
}

QColor ColorWell::color() const {
    return toQColor(m_color);
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
    painter.setBrush(color());
    painter.drawRoundedRect(outer.adjusted(3, 3, -3, -3), 3, 3);
}

void ColorWell::hideEvent(QHideEvent* event) {
    QAbstractButton::hideEvent(event);
    // Another desktop or a minimized window is no reason.
    if (!event->spontaneous())
        closeDialog();
}

void ColorWell::openDialog() {
    // One at a time, as there is one colour to think about.
    for (QColorDialog* const other : window()->findChildren<QColorDialog*>())
        discard(other);
    if (opened)
        opened();
    m_dialog = new QColorDialog(color(), window());
    m_dialog->setAttribute(Qt::WA_DeleteOnClose);
    m_dialog->setWindowTitle(accessibleName());
    m_dialog->setOption(QColorDialog::DontUseNativeDialog);
    connect(m_dialog, &QColorDialog::currentColorChanged, this, [this](const QColor& chosen) {
        // The dialog begins with the well's colour as bytes, which is no choice yet.
        if (chosen.rgb() != color().rgb())
            take(fromQColor(chosen));
    });
    connect(m_dialog, &QDialog::rejected, this, [this, before = m_color] {
        if (m_color == before)
            return;
        m_color = before;
        update();
        if (restored)
            restored(before);
    });
    m_dialog->show();
}

void ColorWell::closeDialog() {
    if (m_dialog)
        discard(m_dialog);
}

void ColorWell::take(const platform::Color& color) {
    m_color = color;
    update();
    if (picked)
        picked(color);
}

} // namespace glimra::desktop
