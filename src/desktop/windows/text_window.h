#pragma once

#include <QDialog>
#include <QPlainTextEdit>

namespace glimra::desktop {

/// A text of the program's own, to be read or copied. Main thread.
class TextWindow final : public QDialog {
public:
    /// `name`: of the window, as tests and assistive programs see it.
    TextWindow(QWidget* parent, const QString& name, const QString& title);

    /// Brings the window to the front with that text, which is no markup.
    void show(const QString& text);

private:
    QPlainTextEdit* m_text;
};

} // namespace glimra::desktop
