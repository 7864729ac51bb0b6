#pragma once

#include <QLayout>

#include <memory>
#include <vector>

class QBoxLayout;

namespace glimra::desktop {

/// A row that goes on in the next line where it would not fit. Within a line, what wants to grow takes the
/// space that is left; spacers at the ends of a line take it too.
class FlowLayout final : public QLayout {
public:
    FlowLayout() = default;
    /// Lays out the widgets that are in `parent` already, in the order in which they were made. `alignment`:
    /// where in a line they stand when none of them grows.
    FlowLayout(QWidget* parent, Qt::Alignment alignment, int spacing);
    ~FlowLayout() override;

    /// Puts a flowing row in the place of one that is laid out in a box: in `parent`, or, where that is null,
    /// as a widget's whole content. `row` is gone then.
    static FlowLayout* replacing(QBoxLayout* row, QBoxLayout* parent);

    void addItem(QLayoutItem* item) override;
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem* itemAt(int index) const override;
    QLayoutItem* takeAt(int index) override;
    Qt::Orientations expandingDirections() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    void setGeometry(const QRect& place) override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;

private:
    enum class Only { Measure, Place };
    using Line = std::vector<QLayoutItem*>;

    int arrange(const QRect& place, Only what) const;
    std::vector<Line> linesIn(int width) const;
    void placeLine(const Line& line, const QRect& place) const;
    static int widthOf(const QLayoutItem& item);

    std::vector<std::unique_ptr<QLayoutItem>> m_items;
    Qt::Alignment m_alignment = Qt::AlignLeft;
};

} // namespace glimra::desktop
