#include "desktop/windows/flow_layout.h"

#include <QBoxLayout>
#include <QWidget>

#include <algorithm>

namespace glimra::desktop {

FlowLayout::FlowLayout(QWidget* parent, Qt::Alignment alignment, int spacing)
    : QLayout(parent),
      m_alignment(alignment) {
    setContentsMargins(0, 0, 0, 0);
    setSpacing(spacing);
    for (QWidget* const widget : parent->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        addWidget(widget);
}

FlowLayout::~FlowLayout() {
    // A layout that goes takes itself out of the one around it, so none may go while it is still listed.
    while (const std::unique_ptr<QLayoutItem> item{takeAt(0)}) {
    }
}

FlowLayout* FlowLayout::replacing(QBoxLayout* row, QBoxLayout* parent) {
    auto* const flow = new FlowLayout;
    flow->setObjectName(row->objectName());
    flow->setSpacing(row->spacing());
    flow->setContentsMargins(row->contentsMargins());
    while (QLayoutItem* const item = row->takeAt(0)) {
        if (QLayout* const inner = item->layout())
            flow->addChildLayout(inner);
        flow->addItem(item);
    }
    if (parent == nullptr) {
        QWidget* const widget = row->parentWidget();
        delete row;
        widget->setLayout(flow);
        return flow;
    }
    const int place = parent->indexOf(row);
    parent->insertLayout(place, flow, parent->stretch(place));
    parent->removeItem(row);
    delete row;
    return flow;
}

void FlowLayout::addItem(QLayoutItem* item) {
    m_items.emplace_back(item);
}

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    if (index < 0 || index >= count())
        return nullptr;
    QLayoutItem* const item = m_items[static_cast<std::size_t>(index)].release();
    m_items.erase(m_items.begin() + index);
    return item;
}

Qt::Orientations FlowLayout::expandingDirections() const {
    const bool grows = std::ranges::any_of(
        m_items, [](const auto& item) { return (item->expandingDirections() & Qt::Horizontal) != 0; });
    return grows ? Qt::Orientations(Qt::Horizontal) : Qt::Orientations();
}

QSize FlowLayout::sizeHint() const {
    QSize size(0, 0);
    for (const auto& item : m_items)
        if (!item->isEmpty() || item->spacerItem() != nullptr)
            size = {size.width() + widthOf(*item) + (size.width() > 0 ? spacing() : 0),
                    std::max(size.height(), item->sizeHint().height())};
    return size.grownBy(contentsMargins());
}

QSize FlowLayout::minimumSize() const {
    QSize size;
    for (const auto& item : m_items)
        size = size.expandedTo(item->minimumSize());
    return size.grownBy(contentsMargins());
}

void FlowLayout::setGeometry(const QRect& place) {
    QLayout::setGeometry(place);
    arrange(contentsRect(), Only::Place);
}

int FlowLayout::heightForWidth(int width) const {
    const QMargins margins = contentsMargins();
    return arrange({0, 0, width - margins.left() - margins.right(), 0}, Only::Measure) + margins.top() +
           margins.bottom();
}

int FlowLayout::widthOf(const QLayoutItem& item) {
    return std::max(item.sizeHint().width(), item.minimumSize().width());
}

std::vector<FlowLayout::Line> FlowLayout::linesIn(int width) const {
    std::vector<Line> lines;
    int used = 0;
    for (const auto& item : m_items) {
        const bool isSpacer = const_cast<QLayoutItem&>(*item).spacerItem() != nullptr;
        if (item->isEmpty() && !isSpacer)
            continue;
        const int needed = widthOf(*item) + (used > 0 ? spacing() : 0);
        if (lines.empty() || (used + needed > width && !isSpacer)) {
            lines.emplace_back();
            used = 0;
        }
        lines.back().push_back(item.get());
        used += widthOf(*item) + (used > 0 ? spacing() : 0);
    }
    return lines;
}

int FlowLayout::arrange(const QRect& place, Only what) const {
    int y = place.y();
    for (const Line& line : linesIn(place.width())) {
        int height = 0;
        for (QLayoutItem* const item : line) {
            const int width = std::min(widthOf(*item), place.width());
            height = std::max({height, item->sizeHint().height(),
                               item->hasHeightForWidth() ? item->heightForWidth(width) : 0});
        }
        if (what == Only::Place)
            placeLine(line, {place.x(), y, place.width(), height});
        y += height + spacing();
    }
    return std::max(0, y - spacing() - place.y());
}

void FlowLayout::placeLine(const Line& line, const QRect& place) const {
    const auto grows = [](const QLayoutItem* item) {
        return (item->expandingDirections() & Qt::Horizontal) != 0;
    };
    int rest = place.width() - spacing() * (static_cast<int>(line.size()) - 1);
    for (const QLayoutItem* const item : line)
        rest -= widthOf(*item);
    auto growing = static_cast<int>(std::ranges::count_if(line, grows));
    int x = place.x() + (growing == 0 && m_alignment.testFlag(Qt::AlignRight) ? std::max(0, rest) : 0);
    for (QLayoutItem* const item : line) {
        int width = std::min(widthOf(*item), place.width());
        if (grows(item) && rest > 0) {
            width += rest / growing;
            rest -= rest / growing--;
        }
        item->setGeometry({x, place.y(), width, place.height()});
        x += width + spacing();
    }
}

} // namespace glimra::desktop
