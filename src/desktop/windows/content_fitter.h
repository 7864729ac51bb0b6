#pragma once

#include <QWidget>

namespace glimra::desktop {

/// Keeps a window whose content does not grow at the size of that content: at least as wide as it was
/// designed, and as high as its texts then need, in whatever font. Fits it when it is shown and when its font
/// changes. Belongs to the window.
class ContentFitter final : public QObject {
public:
    explicit ContentFitter(QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fit();

    QWidget* m_window;
    int m_designedWidth;
};

} // namespace glimra::desktop
