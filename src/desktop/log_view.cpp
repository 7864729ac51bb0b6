#include "desktop/log_view.h"

#include "desktop/text_positions.h"

#include <QFontDatabase>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextCursor>

namespace glimra::desktop {

namespace {

std::size_t unitsIn(const QTextDocument& document) {
    // Every document ends in a paragraph separator that is not part of its text.
    return static_cast<std::size_t>(document.characterCount()) - 1;
}

} // namespace

LogView::LogView(platform::TextView& text, QWidget* parent) : QPlainTextEdit(parent), m_text(text) {
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setUndoRedoEnabled(false);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setAccessibleName("Message log");
    showReplacement(0, 0, m_text.text);
    m_text.replaced.observe([this](std::size_t start, std::size_t length, std::string_view addition) {
        showReplacement(start, length, addition);
    });
    connect(this, &QPlainTextEdit::selectionChanged, this, &LogView::takeUsersSelection);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &LogView::takeUsersSelection);
}

void LogView::resizeEvent(QResizeEvent* event) {
    const bool follows = isScrolledToEnd();
    QPlainTextEdit::resizeEvent(event);
    if (follows)
        scrollToEnd();
}

void LogView::showReplacement(std::size_t start, std::size_t length, std::string_view addition) {
    const QScopedValueRollback guard(m_showingReplacement, true);
    const bool follows = isScrolledToEnd();
    // The text holds the addition already; what stands behind it is as it was. At the end, where nearly all
    // is written, nothing has to be counted.
    const std::string_view text = m_text.text;
    const std::string_view behind = text.substr(start + addition.size());
    const std::size_t end = unitsIn(*document()) - desktop::unitsIn(behind);
    const std::size_t begin = length == 0 ? end : desktop::unitsIn(text.substr(0, start));

    // A cursor of its own: the view's, which stands here too, is carried along without the view jumping to it.
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(begin));
    cursor.setPosition(static_cast<int>(end), QTextCursor::KeepAnchor);
    cursor.insertText(viewText(addition));
    if (follows && behind.empty())
        scrollToEnd();
}

void LogView::takeUsersSelection() {
    if (m_showingReplacement)
        return;
    const QTextCursor cursor = textCursor();
    const auto begin = static_cast<std::size_t>(cursor.selectionStart());
    const auto end = static_cast<std::size_t>(cursor.selectionEnd());
    const std::string_view text = m_text.text;
    m_text.selectionStart = begin == unitsIn(*document()) ? text.size() : bytesOfUnits(text, begin);
    m_text.selectionLength = bytesOfUnits(text.substr(m_text.selectionStart), end - begin);
}

bool LogView::isScrolledToEnd() const {
    return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

void LogView::scrollToEnd() {
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

} // namespace glimra::desktop
