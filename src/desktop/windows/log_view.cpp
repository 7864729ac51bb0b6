#include "desktop/windows/log_view.h"

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
    if (m_begin.bytes != start || m_end.bytes != start + length)
        locateReplaced(start, length, addition.size());

    // A cursor of its own: the view's, which stands here too, is carried along without the view jumping to
    // it.
    QTextCursor cursor(document());
    cursor.setPosition(static_cast<int>(m_begin.units));
    cursor.setPosition(static_cast<int>(m_end.units), QTextCursor::KeepAnchor);
    cursor.insertText(viewText(addition));

    m_begin = m_end = {start + addition.size(), m_begin.units + desktop::unitsIn(addition)};
    if (follows && m_end.bytes == m_text.text.size())
        scrollToEnd();
}

void LogView::locateReplaced(std::size_t start, std::size_t length, std::size_t newLength) {
    // The text holds what is new already; what stands before and behind it is as it was.
    const std::string_view text = m_text.text;
    m_begin = {start, desktop::unitsIn(text.substr(0, start))};
    m_end = {start + length, unitsIn(*document()) - desktop::unitsIn(text.substr(start + newLength))};
}

void LogView::takeUsersSelection() {
    if (m_showingReplacement)
        return;
    const std::string_view text = m_text.text;
    const TextPlace end{text.size(), unitsIn(*document())};
    const auto place = [&](int units) {
        return placeOfUnits(text, static_cast<std::size_t>(units), {m_begin, m_end, end});
    };
    const QTextCursor cursor = textCursor();
    m_begin = place(cursor.selectionStart());
    m_end = place(cursor.selectionEnd());
    m_text.selectionStart = m_begin.bytes;
    m_text.selectionLength = m_end.bytes - m_begin.bytes;
}

bool LogView::isScrolledToEnd() const {
    return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

void LogView::scrollToEnd() {
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

} // namespace glimra::desktop
