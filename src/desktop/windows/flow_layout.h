#pragma once

#include <QLayout>

#include <vector>

namespace glimra::desktop {

/// Puts widgets beside each other, and into further lines where there is no room.
class FlowLayout final : public QLayout {
public:
    /// Lays out the widgets that are in `parent` already, in the order in which they were made.
    explicit FlowLayout(QWidget* parent, Qt::Alignment alignment = Qt::AlignLeft, int spacing = 6);
    ~FlowLayout() override;

    void addItem(QLayoutItem* item) override { m_items.push_back(item); }
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return arrange(QRect(0, 0, width, 0), Move::No); }
    Qt::Orientations expandingDirections() const override { return {}; }
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect& rect) override;

private:
    enum class Move { No, Yes };
    using Line = std::vector<QLayoutItem*>;

    /// Returns the height that the lines take.
    int arrange(const QRect& rect, Move move) const;
    void place(const Line& line, const QRect& rect, int used) const;

    std::vector<QLayoutItem*> m_items;
    Qt::Alignment m_alignment;
};

} // namespace glimra::desktop
