#include "desktop/windows/flow_layout.h"

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
    for (QLayoutItem* const item : m_items)
        delete item;
}

QLayoutItem* FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)] : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
    QLayoutItem* const item = itemAt(index);
    if (item != nullptr)
        m_items.erase(m_items.begin() + index);
    return item;
}

QSize FlowLayout::sizeHint() const {
    QSize size(0, 0);
    for (const QLayoutItem* const item : m_items)
        if (!item->isEmpty())
            size = {size.width() + item->sizeHint().width() + (size.isEmpty() ? 0 : spacing()),
                    std::max(size.height(), item->sizeHint().height())};
    return size;
}

QSize FlowLayout::minimumSize() const {
    QSize size(0, 0);
    for (const QLayoutItem* const item : m_items)
        if (!item->isEmpty())
            size = size.expandedTo(item->sizeHint());
    return size;
}

void FlowLayout::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    arrange(rect, Move::Yes);
}

int FlowLayout::arrange(const QRect& rect, Move move) const {
    Line line;
    int used = 0;
    int lineHeight = 0;
    int top = rect.top();
    const auto endLine = [&] {
        if (move == Move::Yes)
            place(line, QRect(rect.left(), top, rect.width(), lineHeight), used);
        line.clear();
    };
    for (QLayoutItem* const item : m_items) {
        if (item->isEmpty())
            continue;
        const QSize size = item->sizeHint();
        if (!line.empty() && used + spacing() + size.width() > rect.width()) {
            endLine();
            top += lineHeight + spacing();
            lineHeight = 0;
        }
        used = line.empty() ? size.width() : used + spacing() + size.width();
        lineHeight = std::max(lineHeight, size.height());
        line.push_back(item);
    }
    endLine();
    return top + lineHeight - rect.top();
}

void FlowLayout::place(const Line& line, const QRect& rect, int used) const {
    int x = rect.left() + (m_alignment.testFlag(Qt::AlignRight) ? rect.width() - used : 0);
    for (QLayoutItem* const item : line) {
        const QSize size = item->sizeHint();
        item->setGeometry({QPoint(x, rect.top() + (rect.height() - size.height()) / 2), size});
        x += size.width() + spacing();
    }
}

} // namespace glimra::desktop
