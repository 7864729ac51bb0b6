#pragma once

#include "platform/color.h"

#include <QAbstractButton>
#include <QColorDialog>
#include <QPointer>

#include <functional>

namespace glimra::desktop {

/// A colour that the user can change: a click opens the colour dialog, and what is chosen there counts at
/// once. The dialog's Cancel takes back all that was chosen in it. The dialog goes with the window.
class ColorWell final : public QAbstractButton {
public:
    explicit ColorWell(QWidget* parent = nullptr);

    /// The user begins to choose.
    std::function<void()> opened;
    /// The user has changed the colour.
    std::function<void(const platform::Color&)> picked;
    /// The user has given up what was picked since `opened`: the colour is again as it was then, exactly.
    std::function<void(const platform::Color&)> restored;

    /// Shows a colour that came from elsewhere; a colour dialog of this well is then out of date and closes.
    void setColor(const platform::Color& color);
    /// As it shows.
    QColor color() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void openDialog();
    void closeDialog();
    void take(const platform::Color& color);

    platform::Color m_color;
    QPointer<QColorDialog> m_dialog;
};

} // namespace glimra::desktop
