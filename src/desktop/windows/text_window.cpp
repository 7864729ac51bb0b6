#include "desktop/windows/text_window.h"

#include "desktop/windows/window_fitter.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPushButton>
#include <QVBoxLayout>

namespace glimra::desktop {

TextWindow::TextWindow(QWidget* parent, const QString& name, const QString& title)
    : QDialog(parent),
      m_text(new QPlainTextEdit(this)) {
    setObjectName(name);
    setWindowTitle(title);
    resize(760, 520);
    m_text->setObjectName(name + "Text");
    m_text->setAccessibleName(title);
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* const copy = new QPushButton("&Copy", this);
    copy->setObjectName(name + "Copy");
    auto* const close = new QPushButton("Close", this);
    close->setObjectName(name + "Close");
    close->setDefault(true);
    connect(copy, &QPushButton::clicked, this,
            [this] { QGuiApplication::clipboard()->setText(m_text->toPlainText()); });
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(12);
    column->addWidget(m_text, 1);
    auto* const answers = new QHBoxLayout;
    answers->addStretch(1);
    answers->addWidget(copy);
    answers->addWidget(close);
    column->addLayout(answers);
    new WindowFitter(this, WindowFitter::Growth::Free);
}

void TextWindow::show(const QString& text) {
    m_text->setPlainText(text);
    QDialog::show();
    raise();
    activateWindow();
}

} // namespace glimra::desktop
