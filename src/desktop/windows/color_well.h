#pragma once

#include "platform/color.h"

#include <QAbstractButton>

#include <functional>

namespace glimra::desktop {

/// The pencil of a colour: a click on it opens the window's `ColorEditor`, and what is chosen there counts at
/// once. Its Cancel takes back all that was chosen. One that has the property `showsColor` is its own swatch.
class ColorWell final : public QAbstractButton {
public:
    explicit ColorWell(QWidget* parent = nullptr);

    /// The user begins to choose.
    std::function<void()> opened;
    /// The user has changed the colour.
    std::function<void(const platform::Color&)> picked;
    /// The user has given up what was picked since `opened`: the colour is again as it was then, exactly.
    std::function<void(const platform::Color&)> restored;
    /// The user has given the colour a name; empty when there is none any more.
    std::function<void(const QString&)> named;

    /// Shows a colour that came from elsewhere; an editor of this well is then out of date and closes.
    void setColor(const platform::Color& color);
    /// As it shows.
    QColor color() const;
    void setOwnName(const QString& name) { m_ownName = name; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void openEditor();
    void closeEditor();
    void take(const platform::Color& color);
    bool showsColor() const { return property("showsColor").toBool(); }

    platform::Color m_color;
    QString m_ownName;
};

} // namespace glimra::desktop
