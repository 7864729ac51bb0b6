#pragma once

#include <QPointer>
#include <QScrollArea>
#include <QWidget>

class QBoxLayout;
class QDialog;

namespace glimra::desktop {

/// Keeps a window within the space that its screen has, at any scale and font: what does not fit is
/// scrolled, but for the row of buttons at its end, which always shows. Rows whose name ends with "Flow" go
/// on in the next line where they would not fit. Belongs to the window. Main thread.
class WindowFitter final : public QObject {
public:
    /// Whether a user can make the window larger than its content.
    enum class Growth { None, Free };

    /// `window` has its content already. A main window scrolls by itself and is only kept on the screen.
    WindowFitter(QWidget* window, Growth growth);

    /// A frame of that size or less, and if need be moved, that lies on the free part of a screen.
    static QRect withinScreen(QRect frame, const QScreen& screen);
    /// What a window without its frame can have at most.
    static QSize roomOn(const QScreen& screen);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void wrap();
    void takeAnswersFrom(QBoxLayout* content);
    void fit();
    void stayOnScreen();
    QSize neededFor(QSize room) const;

    QWidget* m_window;
    Growth m_growth;
    QSize m_designed;
    /// Null in a main window.
    QScrollArea* m_area = nullptr;
    /// Of a window with a row of buttons at its end.
    QWidget* m_answers = nullptr;
    bool m_isFitted = false;
};

/// The same for a panel of Qt that is about to be shown.
void fitPanel(QDialog* panel);

} // namespace glimra::desktop
