#include "desktop/windows/log_view.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPlainTextDocumentLayout>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocumentFragment>

#include <algorithm>
#include <array>

namespace glimra::desktop {

namespace {

/// What every start says; the marks in the head of the window say it better.
constexpr std::array<const char*, 4> kRoutine{"Glimra version ", "Keyboard driver ",
                                              "Keyboard driver:", "Logitech LED driver (version "};

bool isRoutine(const QTextBlock& block) {
    return block.text().isEmpty() || std::ranges::any_of(kRoutine, [&](const char* beginning) {
               return block.text().startsWith(QLatin1String(beginning));
           });
}

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
    foldRoutine();
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

void LogView::copyAll() const {
    QTextCursor cursor(document()->findBlockByNumber(m_firstKept));
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
    QGuiApplication::clipboard()->setText(cursor.selection().toPlainText());
}

void LogView::clearView() {
    moveCursor(QTextCursor::End);
    m_firstKept = blockCount() - 1;
    foldBefore(m_firstKept);
}

void LogView::foldRoutine() {
    // The user may have replaced what was folded away.
    m_firstKept = std::min(m_firstKept, blockCount() - 1);
    int first = std::min(m_firstShown, blockCount() - 1);
    while (first < blockCount() - 1 && isRoutine(document()->findBlockByNumber(first)))
        ++first;
    foldBefore(first);
}

void LogView::foldBefore(int block) {
    if (block == m_firstShown)
        return;
    for (QTextBlock each = document()->findBlockByNumber(m_firstShown);
         each.isValid() && each.blockNumber() < block; each = each.next()) {
        each.setVisible(false);
        each.setLineCount(0);
    }
    m_firstShown = block;
    auto* const layout = static_cast<QPlainTextDocumentLayout*>(document()->documentLayout());
    document()->markContentsDirty(0, document()->findBlockByNumber(block).position());
    layout->requestUpdate();
    Q_EMIT layout->documentSizeChanged(layout->documentSize());
    scrollToEnd();
}

bool LogView::isScrolledToEnd() const {
    return verticalScrollBar()->value() == verticalScrollBar()->maximum();
}

void LogView::scrollToEnd() {
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

} // namespace glimra::desktop
