#include "desktop/windows/addon_installer.h"

#include "desktop/addon/addon_words.h"
#include "desktop/doctor/checks.h"
#include "desktop/windows/window_fitter.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QPointer>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace glimra::desktop {

namespace {

using addon::GameClient;
using addon::ShippedAddon;
using addon::Standing;
using Report = AddonInstaller::Report;

/// The folder as its user knows it.
QString shownFolder(const std::filesystem::path& folder) {
    const QString path = QFile::decodeName(folder.c_str());
    const QString home = QDir::home().canonicalPath();
    return !home.isEmpty() && path.startsWith(home + "/") ? "~" + path.mid(home.size()) : path;
}

std::string planFor(Standing standing) {
    if (standing == Standing::Missing)
        return "; it will be installed";
    if (standing == Standing::Older || standing == Standing::Changed)
        return "; it will be replaced";
    return {};
}

/// What is there, before anything is done.
Report look(std::vector<GameClient> clients, const ShippedAddon& shipped) {
    Report report;
    for (const GameClient& client : clients) {
        const addon::InstalledAddon installed = lookAtAddon(client.folder, shipped);
        report.lines.push_back("the add-on is " + describe(installed, shipped) + planFor(installed.standing));
        report.canInstall = report.canInstall || installed.canBeInstalled();
    }
    report.text = clients.empty() ? "World of Warcraft was not found in the usual places. Choose its folder."
                  : report.canInstall ? "Install puts version " + shipped.version.text() + " in place."
                                      : "There is nothing to install.";
    report.clients = std::move(clients);
    return report;
}

Report installAll(std::vector<GameClient> clients, const ShippedAddon& shipped) {
    Report report;
    bool areAllCurrent = true;
    for (const GameClient& client : clients) {
        const addon::Installation done = installAddon(client.folder, shipped);
        report.lines.push_back(describe(done, shipped));
        areAllCurrent = areAllCurrent && done.isCurrent();
        // Whoever has made room may try again.
        report.canInstall = report.canInstall || !done.error.empty();
    }
    report.text = areAllCurrent
                      ? "Version " + shipped.version.text() +
                            " is installed. Start the game anew, and tick Glimraxmit in its list of "
                            "add-ons."
                      : "Not every client has this version now; the list says why.";
    report.clients = std::move(clients);
    return report;
}

Report addClientsOf(const std::filesystem::path& folder, std::vector<GameClient> clients,
                    const ShippedAddon& shipped) {
    const std::vector<GameClient> found = addon::clientsOfFolder(folder);
    for (const GameClient& client : found)
        if (std::ranges::find(clients, client.folder, &GameClient::folder) == clients.end())
            clients.push_back(client);
    Report report = look(std::move(clients), shipped);
    if (found.empty())
        report.text = folder.string() + " is no folder of World of Warcraft. Choose " +
                      std::string(addon::kExpectedFolders) + ".";
    return report;
}

} // namespace

AddonInstaller::AddonInstaller(QDialog* window, platform::RunLoop& runLoop,
                               const app::LauncherState& launched)
    : m_window(window),
      m_runLoop(runLoop),
      m_launched(launched) {
}

void AddonInstaller::open() {
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    run("Looking for World of Warcraft…",
        [places = addon::searchPlaces(m_launched)](const ShippedAddon& shipped) {
            return look(addon::findClients(places), shipped);
        });
}

void AddonInstaller::chooseFolder() {
    auto* const dialog = new QFileDialog(m_window, "Choose the Game's Folder", QDir::homePath());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    // Wine's folder is one of those.
    dialog->setFilter(dialog->filter() | QDir::Hidden);
    connect(dialog, &QFileDialog::fileSelected, this,
            [this](const QString& folder) { addFolder(QFile::encodeName(folder).toStdString()); });
    fitPanel(dialog);
    dialog->open();
}

void AddonInstaller::addFolder(const std::filesystem::path& folder) {
    run("Looking into that folder…", [folder, clients = m_clients](const ShippedAddon& shipped) {
        return addClientsOf(folder, clients, shipped);
    });
}

void AddonInstaller::install() {
    run("Installing…",
        [clients = m_clients](const ShippedAddon& shipped) { return installAll(clients, shipped); });
}

void AddonInstaller::refreshFindings() {
    m_worker.post([this, self = QPointer(this), launched = m_launched](const std::stop_token&) {
        m_runLoop.post([self, findings = doctor::checkAddon(launched)] {
            if (!self)
                return;
            self->m_findings = findings;
            self->found.emit();
        });
    });
}

void AddonInstaller::run(const QString& meanwhile, std::function<Report(const ShippedAddon&)> errand) {
    if (!m_isIdle)
        return;
    setIdle(false, false);
    m_window->findChild<QLabel*>("addonResult")->setText(meanwhile);
    m_worker.post([this, self = QPointer(this), errand = std::move(errand)](const std::stop_token&) {
        const auto shipped = addon::readShippedAddon(addon::shippedAddonFolder());
        const auto* const problem = std::get_if<std::string>(&shipped);
        Report report = problem == nullptr ? errand(std::get<ShippedAddon>(shipped))
                                           : Report{.clients = {}, .lines = {}, .text = *problem};
        // The worker ends before this object does, but what it posts may come later.
        m_runLoop.post([self, report = std::move(report)] {
            if (self)
                self->show(report);
        });
    });
}

void AddonInstaller::show(const Report& report) {
    m_clients = report.clients;
    auto* const list = m_window->findChild<QListWidget*>("addonClients");
    list->clear();
    for (std::size_t i = 0; i < report.clients.size(); ++i) {
        const std::string_view name = report.clients[i].name;
        const QString folder = shownFolder(report.clients[i].folder);
        list->addItem(QString("%1: %2\n%3")
                          .arg(QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())),
                               QString::fromStdString(report.lines[i]), folder));
        list->item(list->count() - 1)->setToolTip(folder);
    }
    m_window->findChild<QLabel*>("addonResult")->setText(QString::fromStdString(report.text));
    setIdle(true, report.canInstall);
    refreshFindings();
}

void AddonInstaller::setIdle(bool isIdle, bool canInstall) {
    m_isIdle = isIdle;
    m_window->findChild<QPushButton*>("addonChooseButton")->setEnabled(isIdle);
    m_window->findChild<QPushButton*>("addonInstallButton")->setEnabled(canInstall);
}

} // namespace glimra::desktop
