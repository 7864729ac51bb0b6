#include "desktop/windows/application_icon.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>

namespace glimra::desktop {

namespace {

QPixmap drawn(int size) {
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size / 64.0, size / 64.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor("#1c1e22"));
    painter.drawRoundedRect(QRectF(2, 2, 60, 60), 14, 14);
    QLinearGradient light(12, 10, 52, 54);
    light.setColorAt(0.0, "#28e0ff");
    light.setColorAt(1.0, "#9a5cff");
    painter.setBrush(light);
    painter.drawRoundedRect(QRectF(10, 9, 44, 44), 9, 9);
    QFont font("Sans");
    font.setPixelSize(32);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(QColor("#10131a"));
    painter.drawText(QRectF(10, 9, 44, 44), Qt::AlignCenter, "G");
    return pixmap;
}

} // namespace

QIcon applicationIcon() {
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 72, 128, 256})
        icon.addPixmap(drawn(size));
    return icon;
}

} // namespace glimra::desktop
