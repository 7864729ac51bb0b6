#pragma once

#include "app/launcher.h"
#include "desktop/addon/addon_folder.h"
#include "desktop/addon/game_finder.h"
#include "desktop/doctor/finding.h"
#include "desktop/services/background_worker.h"
#include "platform/controls.h"
#include "platform/run_loop.h"

#include <QDialog>

#include <functional>
#include <string>
#include <vector>

namespace glimra::desktop {

/// The window that installs the add-on: it lists the clients of the game, what each has of the add-on, and
/// what came of installing it. Main thread; the disk is left to a worker.
class AddonInstaller final : public QObject {
public:
    /// `launched` are the applications near which the game may be.
    AddonInstaller(QDialog* window, platform::RunLoop& runLoop, const app::LauncherState& launched);

    /// Shows the window and looks for clients.
    void open();
    void close() { m_window->close(); }
    /// Has the user choose a folder, and adds the clients that it stands for.
    void chooseFolder();
    /// Installs the add-on in all clients that are listed.
    void install();

    /// Looks in the usual places how each client stands, without the window.
    void refreshFindings();
    /// What was found there last; empty before that.
    const doctor::Findings& findings() const { return m_findings; }
    platform::Signal<> found;

    /// What the window shows once an errand is done.
    struct Report {
        std::vector<addon::GameClient> clients;
        /// What there is to say of each of them.
        std::vector<std::string> lines;
        /// What there is to say of all of them.
        std::string text;
        bool canInstall = false;
    };

private:
    void addFolder(const std::filesystem::path& folder);
    void run(const QString& meanwhile, std::function<Report(const addon::ShippedAddon&)> errand);
    void show(const Report& report);
    void setIdle(bool isIdle, bool canInstall);

    QDialog* m_window;
    platform::RunLoop& m_runLoop;
    const app::LauncherState& m_launched;
    std::vector<addon::GameClient> m_clients;
    doctor::Findings m_findings;
    bool m_isIdle = true;
    BackgroundWorker m_worker{1};
};

} // namespace glimra::desktop
