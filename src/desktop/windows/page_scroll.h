#pragma once

#include <QScrollArea>

namespace glimra::desktop {

/// The main window's page between head and status bar: it fits itself to any window. The drawn keyboard gets
/// smaller in a low window and the head a part of the page, the cards stand one below the other in a narrow
/// one, and what still has no room is scrolled to.
class PageScroll final : public QScrollArea {
public:
    explicit PageScroll(QWidget* parent = nullptr);

    /// The widgets named `headerBar`, `imageView` and `cards`, once they are what is to be shown.
    void fitContent();

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    QSize minimumSizeHint() const override { return {240, 80}; }

private:
    void fit();
    void takeHead();

    bool m_cardsAreShared = false;
};

} // namespace glimra::desktop
