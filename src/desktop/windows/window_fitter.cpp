#include "desktop/windows/window_fitter.h"

#include "desktop/windows/flow_layout.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QMainWindow>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace glimra::desktop {

namespace {

/// Until a window manager has told how wide its frames are; they are alike for all windows.
QMargins s_frame{4, 36, 4, 4};

/// Shrinks as far as its parts do before anything must be scrolled.
class Body final : public QWidget {
public:
    /// Takes over another widget's content.
    Body(QWidget* from, QWidget* window) : QWidget(window) { setLayout(from->layout()); }

    int heightForWidth(int width) const override { return layout()->totalMinimumHeightForWidth(width); }
};

bool flows(const QObject* layout) {
    return layout->objectName().endsWith("Flow");
}

/// Also rows within rows, and those that are a widget's whole content.
void letRowsFlow(QBoxLayout* box) {
    for (int i = 0; i < box->count(); ++i) {
        const QLayoutItem* const item = box->itemAt(i);
        const QWidget* const widget = const_cast<QLayoutItem*>(item)->widget();
        auto* const row = qobject_cast<QBoxLayout*>(
            widget == nullptr ? const_cast<QLayoutItem*>(item)->layout() : widget->layout());
        if (row == nullptr)
            continue;
        letRowsFlow(row);
        if (flows(row))
            FlowLayout::replacing(row, widget == nullptr ? box : nullptr);
    }
}

int heightOf(const QLayout& layout, int width) {
    return layout.hasHeightForWidth() ? layout.totalHeightForWidth(width) : layout.totalSizeHint().height();
}

/// The frame of the window manager around a window that is shown.
QMargins frameOf(const QWidget& window) {
    const QRect inner = window.geometry();
    const QRect outer = window.frameGeometry();
    return {inner.left() - outer.left(), inner.top() - outer.top(), outer.right() - inner.right(),
            outer.bottom() - inner.bottom()};
}

} // namespace

QSize WindowFitter::roomOn(const QScreen& screen) {
    return screen.availableGeometry().marginsRemoved(s_frame).size();
}

QRect WindowFitter::withinScreen(QRect frame, const QScreen& screen) {
    const QRect room = screen.availableGeometry();
    frame.setSize(frame.size().boundedTo(room.size()));
    frame.moveLeft(std::clamp(frame.left(), room.left(), room.left() + room.width() - frame.width()));
    frame.moveTop(std::clamp(frame.top(), room.top(), room.top() + room.height() - frame.height()));
    return frame;
}

WindowFitter::WindowFitter(QWidget* window, Growth growth)
    : QObject(window),
      m_window(window),
      m_growth(growth),
      m_designed(window->size()) {
    // The main window's page scrolls by itself.
    if (qobject_cast<QMainWindow*>(window) == nullptr)
        wrap();
    window->installEventFilter(this);
}

void WindowFitter::wrap() {
    m_area = new QScrollArea(m_window);
    m_area->setWidgetResizable(true);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->viewport()->setAutoFillBackground(false);
    // All of it stays in the window at each step, so that the order of tabs does, too.
    QLayout* const content = m_window->layout();
    m_area->setWidget(new Body(m_window, m_window));
    m_area->widget()->setAutoFillBackground(false);
    auto* const column = new QVBoxLayout(m_window);
    column->setContentsMargins({});
    column->setSpacing(0);
    column->addWidget(m_area, 1);
    if (auto* const box = qobject_cast<QBoxLayout*>(content)) {
        letRowsFlow(box);
        takeAnswersFrom(box);
    }
    if (m_answers != nullptr)
        column->addWidget(m_answers);
}

void WindowFitter::takeAnswersFrom(QBoxLayout* content) {
    auto* const last = qobject_cast<QBoxLayout*>(content->itemAt(content->count() - 1)->layout());
    if (last == nullptr)
        return;
    const QMargins margins = content->contentsMargins();
    FlowLayout* const row = FlowLayout::replacing(last, content);
    content->removeItem(row);
    row->setParent(nullptr);
    row->setContentsMargins(margins.left(), content->spacing(), margins.right(), margins.bottom());
    content->setContentsMargins(margins.left(), margins.top(), margins.right(), 0);
    m_answers = new QWidget(m_window);
    m_answers->setLayout(row);
}

bool WindowFitter::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && !event->spontaneous()) {
        fit();
        // By then the window manager has put its frame around the window.
        QTimer::singleShot(200, this, [this] { stayOnScreen(); });
    } else if (event->type() == QEvent::FontChange) {
        m_isFitted = m_isFitted && m_growth == Growth::Free;
        fit();
    }
    return QObject::eventFilter(watched, event);
}

QSize WindowFitter::neededFor(QSize room) const {
    const QLayout* const content = m_area->widget()->layout();
    QSize needed = content->totalSizeHint();
    if (m_answers != nullptr)
        needed = needed.expandedTo({m_answers->minimumSizeHint().width(), 0});
    int width = std::min(std::max(m_designed.width(), needed.width()), room.width());
    // What flows may be narrower than a single line of it.
    if (m_growth == Growth::Free)
        width = std::min(std::max(m_designed.width(), content->totalMinimumSize().width()), room.width());
    const auto heightFor = [&](int wide) {
        return heightOf(*content, wide) + (m_answers == nullptr ? 0 : heightOf(*m_answers->layout(), wide));
    };
    const int height = heightFor(width);
    if (height > room.height())
        width = std::min(width + m_area->verticalScrollBar()->sizeHint().width(), room.width());
    return {width, std::min(height, room.height())};
}

void fitPanel(QDialog* panel) {
    // The desktop may show a panel of its own instead.
    if (panel->layout() != nullptr)
        new WindowFitter(panel, WindowFitter::Growth::Free);
}

void WindowFitter::fit() {
    const QScreen* const screen = m_window->screen();
    const QSize room = roomOn(*screen);
    if (m_area != nullptr)
        m_area->widget()->layout()->invalidate();
    if (m_growth == Growth::None) {
        m_window->setFixedSize(neededFor(room));
        return;
    }
    m_window->setMinimumSize(QSize(320, 200).boundedTo(room));
    if (m_isFitted || m_area == nullptr)
        m_window->resize(m_window->size().boundedTo(room));
    else
        m_window->resize(neededFor(room).expandedTo(m_designed).boundedTo(room));
    m_isFitted = true;
}

void WindowFitter::stayOnScreen() {
    if (!m_window->isVisible() || m_window->isMaximized() || m_window->isFullScreen())
        return;
    const QMargins frame = frameOf(*m_window);
    if (!frame.isNull() && frame != s_frame) {
        s_frame = frame;
        fit();
    }
    const QRect outer = m_window->frameGeometry();
    const QRect inside = withinScreen(outer, *m_window->screen());
    if (inside.topLeft() != outer.topLeft())
        m_window->move(inside.topLeft());
}

} // namespace glimra::desktop
