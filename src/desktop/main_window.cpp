#include "desktop/main_window.h"

#include <QCloseEvent>
#include <QVBoxLayout>

namespace glimra::desktop {

MainWindow::MainWindow(const Contents& contents, std::function<void()> closeAsked)
    : m_closeAsked(std::move(closeAsked)) {
    setWindowTitle("Glimra");
    setObjectName("mainWindow");
    auto* const layout = new QVBoxLayout(this);
    auto* const keyboard = new KeyboardView(contents.keyboard, contents.now);
    auto* const log = new LogView(contents.log);
    keyboard->setObjectName("keyboardView");
    log->setObjectName("myTextScroll");
    layout->addWidget(keyboard, 0);
    layout->addWidget(log, 1);
    resize(980, 640);

    contents.window.visible.changed.observe([this](bool visible) { setVisible(visible); });
    contents.window.broughtToFront.observe([this] {
        raise();
        activateWindow();
    });
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    m_closeAsked();
}

} // namespace glimra::desktop
