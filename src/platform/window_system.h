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

/// What windows can do beyond being there. Main thread only.
class WindowSystem {
public:
    virtual ~WindowSystem() = default;

    /// Puts the main window where it was when its frame was saved under `frameName`, if it ever was.
    virtual void restoreFrame(std::string_view frameName) = 0;
    virtual void saveFrame(std::string_view frameName) = 0;

    /// Shows a window and serves nothing but it until `stopModal`; returns the code given there, 0 when the
    /// window was closed otherwise. Hiding the window afterwards is the caller's.
    virtual int runModal(Window& window) = 0;
    /// Ends the innermost modal session; without one, nothing.
    virtual void stopModal(int code) = 0;

    /// Both wait for the user; none when the user did not confirm.
    virtual std::optional<std::string> runSavePanel(const SavePanel& panel) = 0;
    virtual std::optional<std::string> runOpenPanel(const OpenPanel& panel) = 0;

    /// Shows an alert and waits until it is dismissed.
    virtual void runAlert(const Alert& alert) = 0;
    /// Shows an alert as a sheet of the main window and returns.
    virtual void showSheet(const Alert& alert) = 0;

    /// Hides the shared colour panel, if it shows.
    virtual void hideColorPanel() = 0;

    /// The user's folder for documents, or what stands in for it; none when there is no such folder.
    virtual std::optional<std::string> documentsFolder() = 0;
};

} // namespace glimra::platform
