#pragma once

#include "desktop/windows/text_positions.h"
#include "platform/controls.h"

#include <QPlainTextEdit>

namespace glimra::desktop {

/// Shows a TextView and is its selection: what the user selects is where the next text goes. While the
/// insertion point is at the end the view scrolls along, unless the user has scrolled away.
///
/// The text is the TextView's; the user can select and copy but not type. A character that would upset the
/// view (a control character, a paragraph separator, a byte that is no UTF-8) is shown by a stand-in.
///
/// What each start says of itself before the first line that matters is folded away, and so is what was
/// cleared. It stays part of the text.
class LogView final : public QPlainTextEdit {
public:
    /// Neither `text` may change after the view is gone, nor the view outlive `text`.
    explicit LogView(platform::TextView& text, QWidget* parent = nullptr);

    /// Puts the text since it was last cleared into the clipboard, the folded lines included.
    void copyAll() const;
    /// Folds away all that is there; the next line is the first.
    void clearView();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showReplacement(std::size_t start, std::size_t length, std::string_view addition);
    void locateReplaced(std::size_t start, std::size_t length, std::size_t newLength);
    void takeUsersSelection();
    void foldRoutine();
    void foldBefore(int block);
    bool isScrolledToEnd() const;
    void scrollToEnd();

    platform::TextView& m_text;
    /// The selection. A new one is searched from here, since it is usually near and the start is far away.
    TextPlace m_begin;
    TextPlace m_end;
    bool m_showingReplacement = false;
    /// The first paragraph that is not folded away, and the first since the view was cleared.
    int m_firstShown = 0;
    int m_firstKept = 0;
};

} // namespace glimra::desktop
