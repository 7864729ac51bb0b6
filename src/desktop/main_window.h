#pragma once

#include "desktop/keyboard_view.h"
#include "desktop/log_view.h"
#include "platform/controls.h"

#include <QWidget>

#include <functional>

namespace glimra::desktop {

/// The keyboard as it is lit now, and the message log beneath it.
class MainWindow final : public QWidget {
public:
    struct Contents {
        platform::Window& window;
        platform::TextView& log;
        keyboards::VirtualKeyboard& keyboard;
        std::function<keyboards::Time()> now;
    };

    /// Shows and hides itself as `contents.window` tells. Its close box does not close it but calls
    /// `closeAsked`.
    MainWindow(const Contents& contents, std::function<void()> closeAsked);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    std::function<void()> m_closeAsked;
};

} // namespace glimra::desktop
