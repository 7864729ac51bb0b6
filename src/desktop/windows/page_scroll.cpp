#include "desktop/windows/page_scroll.h"

#include <QBoxLayout>
#include <QEvent>
#include <QSplitter>

#include <algorithm>
#include <utility>

namespace glimra::desktop {

namespace {

/// The keyboard leaves this part of the page to the rest.
constexpr double kKeyboardShare = 0.5;
/// In letters, so that it goes with the font.
constexpr int kNarrow = 88;
/// In lines. Below it the window's head is scrolled away, too.
constexpr int kLow = 22;

int neededHeight(const QLayout& layout, int width) {
    return layout.hasHeightForWidth() ? layout.totalMinimumHeightForWidth(width)
                                      : layout.totalMinimumSize().height();
}

/// A splitter does not ask for the height that goes with a width, nor for less than it would like.
void fitCards(QSplitter& cards) {
    int height = 0;
    for (int i = 0; i < cards.count(); ++i) {
        QWidget* const card = cards.widget(i);
        if (card->isHidden())
            continue;
        const int needed = neededHeight(*card->layout(), card->width());
        card->setMinimumHeight(needed);
        const bool areBeside = cards.orientation() == Qt::Horizontal;
        height = areBeside || height == 0 ? std::max(height, needed) : height + cards.handleWidth() + needed;
    }
    cards.setMinimumHeight(height);
}

} // namespace

PageScroll::PageScroll(QWidget* parent) : QScrollArea(parent) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void PageScroll::fitContent() {
    // Nothing of the page itself takes the keyboard.
    setFocusPolicy(Qt::NoFocus);
    widget()->installEventFilter(this);
    const auto* const cards = widget()->findChild<QSplitter*>("cards");
    for (int i = 0; i < cards->count(); ++i)
        cards->widget(i)->installEventFilter(this);
    fit();
}

void PageScroll::showEvent(QShowEvent* event) {
    QScrollArea::showEvent(event);
    // Only now is it known what there is to share.
    if (!std::exchange(m_cardsAreShared, true))
        widget()->findChild<QSplitter*>("cards")->setSizes({width() / 2, width() / 2});
}

void PageScroll::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    fit();
}

bool PageScroll::eventFilter(QObject* watched, QEvent* event) {
    const bool isPage = watched == widget();
    if ((isPage && event->type() == QEvent::LayoutRequest) || (!isPage && event->type() == QEvent::Resize))
        fit();
    return QScrollArea::eventFilter(watched, event);
}

void PageScroll::takeHead() {
    auto* const head = window()->findChild<QWidget*>("headerBar");
    const bool isLow = window()->height() < kLow * fontMetrics().height();
    auto* const column = static_cast<QBoxLayout*>((isLow ? widget() : parentWidget())->layout());
    if (column->indexOf(head) < 0)
        column->insertWidget(0, head);
}

void PageScroll::fit() {
    if (widget() == nullptr)
        return;
    auto* const keyboard = widget()->findChild<QWidget*>("imageView");
    auto* const cards = widget()->findChild<QSplitter*>("cards");
    takeHead();
    const QSize room = viewport()->size();
    const double aspect = static_cast<double>(keyboard->sizeHint().width()) / keyboard->sizeHint().height();
    keyboard->setMaximumWidth(std::max(keyboard->minimumSizeHint().width(),
                                       static_cast<int>(room.height() * kKeyboardShare * aspect)));
    const bool isNarrow = room.width() < kNarrow * fontMetrics().averageCharWidth();
    cards->setOrientation(isNarrow ? Qt::Vertical : Qt::Horizontal);
    fitCards(*cards);
    // A scroll area does not ask for the height that goes with a width.
    widget()->setMinimumHeight(neededHeight(*widget()->layout(), room.width()));
}

} // namespace glimra::desktop
