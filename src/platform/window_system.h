#pragma once

#include "platform/controls.h"

#include <optional>
#include <string>
#include <vector>

namespace glimra::platform {

struct Alert {
    std::string title;
    std::string text;
    std::vector<std::string> buttons;
};

struct SavePanel {
    std::string prompt;
    std::string suggestedName;
    std::string fileExtension;
    std::string directory;
};

struct OpenPanel {
    std::string prompt;
    std::string message;
    std::string fileExtension;
};

/// What a modal session returns when its window is closed without an answer, or the program ends.
inline constexpr int kModalClosed = -1;

/// Window operations other than showing and hiding. Main thread only.
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    /// Restores the main window's position and size saved under `frameName`, if there are any.
    virtual void restoreFrame(std::string_view frameName) = 0;
    virtual void saveFrame(std::string_view frameName) = 0;

    /// Shows a window modally until `stopModal` is called. Returns the code given there, or
    /// `kModalClosed`. The caller hides the window afterwards.
    virtual int runModal(Window& window) = 0;
    /// Ends the innermost modal session; does nothing when there is none.
    virtual void stopModal(int code) = 0;

    /// Both wait for the user and return the chosen path; none when the user did not confirm.
    virtual std::optional<std::string> runSavePanel(const SavePanel& panel) = 0;
    virtual std::optional<std::string> runOpenPanel(const OpenPanel& panel) = 0;

    /// Shows an alert and waits until it is dismissed.
    virtual void runAlert(const Alert& alert) = 0;
    /// Shows an alert as a sheet of the main window and returns.
    virtual void showSheet(const Alert& alert) = 0;

    /// Hides the shared colour panel if it is visible.
    virtual void hideColorPanel() = 0;

    /// The user's documents folder, or their home folder when they have none; none when neither exists.
    virtual std::optional<std::string> documentsFolder() = 0;
};

} // namespace glimra::platform
