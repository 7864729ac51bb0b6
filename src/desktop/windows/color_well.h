#pragma once

#include <QAbstractButton>
#include <QColorDialog>
#include <QPointer>

#include <functional>

namespace glimra::desktop {

/// A colour that the user can change: a click opens the colour dialog, and what is chosen there counts at
/// once.
class ColorWell final : public QAbstractButton {
public:
    explicit ColorWell(QWidget* parent = nullptr);

    /// Called when the user has changed the colour.
    std::function<void(const QColor&)> picked;

    /// Shows a colour that came from elsewhere; a colour dialog of this well is then out of date and closes.
    void setColor(const QColor& color);
    const QColor& color() const { return m_color; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void openDialog();
    void take(const QColor& color);

    QColor m_color = Qt::black;
    QPointer<QColorDialog> m_dialog;
};

} // namespace glimra::desktop
