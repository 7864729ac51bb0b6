#include "desktop/windows/help_view.h"

#include "app/rich_text.h"

#include <QFontDatabase>
#include <QTextCursor>

namespace glimra::desktop {

namespace {

/// The size of running text in the help, in half points; other sizes count relative to it.
constexpr double kRunningSize = 24.0;
constexpr double kTwipsPerPixel = 15.0;

QTextCharFormat formatOf(const app::TextRun& run, const QFont& base) {
    QTextCharFormat format;
    if (run.monospace)
        format.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    format.setFontPointSize(base.pointSizeF() * run.size / kRunningSize);
    format.setFontWeight(run.bold ? QFont::Bold : QFont::Normal);
    return format;
}

} // namespace

HelpView::HelpView(QWidget* parent) : QTextBrowser(parent) {
    document()->setDocumentMargin(24);
}

void HelpView::showRichText(std::string_view rtf) {
    clear();
    QTextCursor cursor(document());
    bool isFirst = true;
    for (const app::Paragraph& paragraph : app::readRichText(rtf)) {
        QTextBlockFormat block;
        block.setLeftMargin(paragraph.leftIndent / kTwipsPerPixel);
        block.setBottomMargin(fontMetrics().height() * 0.4);
        block.setLineHeight(120, QTextBlockFormat::ProportionalHeight);
        if (isFirst)
            cursor.setBlockFormat(block);
        else
            cursor.insertBlock(block);
        isFirst = false;
        for (const app::TextRun& run : paragraph.runs)
            cursor.insertText(QString::fromStdString(run.text), formatOf(run, font()));
    }
    // From the beginning, also where the view has no size yet.
    moveCursor(QTextCursor::Start);
}

} // namespace glimra::desktop
