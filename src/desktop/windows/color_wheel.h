#pragma once

#include <QPixmap>
#include <QWidget>

#include <functional>

namespace glimra::desktop {

/// Hue around, saturation outwards: chosen with the mouse, or with arrow keys.
class ColorWheel final : public QWidget {
public:
    /// Each from 0 to 1. Black and white have a hue, too, so that it is not lost on the way.
    struct Choice {
        float hue = 0;
        float saturation = 0;
    };

    explicit ColorWheel(QWidget* parent = nullptr);

    std::function<void(const Choice&)> chosen;

    void setChoice(const Choice& choice);
    const Choice& choice() const { return m_choice; }
    /// The brightness in which the wheel is drawn.
    void setBrightness(float brightness);

    QSize sizeHint() const override { return {150, 150}; }
    QSize minimumSizeHint() const override { return {110, 110}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    QRectF disk() const;
    void choose(const Choice& choice);
    void chooseAt(const QPointF& point);

    Choice m_choice;
    float m_brightness = 1;
};

} // namespace glimra::desktop
