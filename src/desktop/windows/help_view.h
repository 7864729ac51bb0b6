#pragma once

#include <QTextBrowser>

#include <string_view>

namespace glimra::desktop {

/// Shows the help, in the desktop's own fonts and colours.
class HelpView final : public QTextBrowser {
public:
    explicit HelpView(QWidget* parent = nullptr);

    /// Shows RTF as `app::readRichText` reads it.
    void showRichText(std::string_view rtf);
};

} // namespace glimra::desktop
