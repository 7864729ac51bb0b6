#pragma once

#include <QIcon>
#include <QPushButton>

#include <optional>

namespace glimra::desktop {

/// How far something is, in a shape as well as a color.
enum class Mark { Open, Partly, Good, Bad };

/// The mark as a small picture of `side` points, sharp at `ratio` pixels to the point.
QPixmap markPicture(Mark mark, const QPalette& palette, int side, double ratio);

/// A button without a frame. Its property `look` says what it is: a "chip" is one of several choices and
/// filled when it is chosen, a "link" has the color of links, anything else is plain text. All have a ground
/// under the mouse, and a ring with the focus where the keyboard gave it.
class QuietButton : public QPushButton {
    Q_OBJECT

public:
    explicit QuietButton(QWidget* parent = nullptr);

    /// Before the text.
    void setMark(Mark mark);
    std::optional<Mark> mark() const { return m_mark; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    bool looks(const char* look) const { return property("look").toString() == QLatin1String(look); }
    int markRoom() const;

    std::optional<Mark> m_mark;
    bool m_hasRing = false;
};

} // namespace glimra::desktop
