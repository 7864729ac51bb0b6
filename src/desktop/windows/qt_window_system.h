#pragma once

#include "desktop/loop/qt_run_loop.h"
#include "platform/user_defaults.h"
#include "platform/window_system.h"

#include <QEventLoop>
#include <QPointer>
#include <QWidget>

#include <unordered_map>
#include <vector>

namespace glimra::desktop {

/// Windows, panels and alerts of Qt. While one of them waits for the user it takes all of the user's input
/// and holds the run loop, but for posted jobs: the application can still be asked to quit. Main thread.
class QtWindowSystem final : public platform::WindowSystem {
public:
    /// Frames are kept in `userDefaults`; `runLoop` is the one to hold.
    QtWindowSystem(platform::UserDefaults& userDefaults, QtRunLoop& runLoop)
        : m_userDefaults(userDefaults),
          m_runLoop(runLoop) {}

    /// The window that frames, sheets and panels belong to.
    void setMainWindow(QWidget* mainWindow) { m_mainWindow = mainWindow; }
    /// The widget that shows `window`, for modal sessions.
    void addWindow(platform::Window& window, QWidget* widget);
    /// Brings the window of the innermost modal session to the front; false when there is none.
    bool raiseModal();

    void restoreFrame(std::string_view frameName) override;
    void saveFrame(std::string_view frameName) override;
    int runModal(platform::Window& window) override;
    void stopModal(int code) override;
    std::optional<std::string> runSavePanel(const platform::SavePanel& panel) override;
    std::optional<std::string> runOpenPanel(const platform::OpenPanel& panel) override;
    void runAlert(const platform::Alert& alert) override;
    void showSheet(const platform::Alert& alert) override;
    void hideColorPanel() override;
    std::optional<std::string> documentsFolder() override;

private:
    struct ModalSession {
        explicit ModalSession(platform::Window& shown) : window(shown) {}

        platform::Window& window;
        QEventLoop loop;
        int code = platform::kModalClosed;
        bool isAnswered = false;
    };

    platform::UserDefaults& m_userDefaults;
    QtRunLoop& m_runLoop;
    QPointer<QWidget> m_mainWindow;
    std::unordered_map<const platform::Window*, QPointer<QWidget>> m_widgets;
    std::vector<ModalSession*> m_sessions;
};

} // namespace glimra::desktop
