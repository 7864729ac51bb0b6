#include "app/launcher.h"

#include <array>

namespace glimra::app {

namespace {

namespace settings = platform::settings;

constexpr const char* kScriptingCommand = "/usr/bin/osascript";

/// One application name: its setting, its place in memory and its text field.
struct NameRow {
    const platform::Setting<std::string_view>& setting;
    std::string LauncherState::*name;
    platform::TextField Outlets::*field;
};

constexpr std::array<NameRow, 3> kNames{{
    {settings::kWowAppName, &LauncherState::WowAppName, &Outlets::WoWAppNameField},
    {settings::kWowClassicAppName, &LauncherState::WowClassicAppName, &Outlets::WoWClassicAppNameField},
    {settings::kBNAppName, &LauncherState::BNAppName, &Outlets::BNAppNameField},
}};

std::array<platform::MenuItem*, 4> autorunItems(Outlets& outlets) {
    return {&outlets.autorunNoneMI, &outlets.autorunBNetMI, &outlets.autorunWowMI, &outlets.autorunClassicMI};
}

} // namespace

std::string activationScript(std::string_view name) {
    return "-e tell application \"" + std::string(name) + "\" to activate";
}

LauncherState savedApplicationNames(const platform::SettingsReader& reader) {
    LauncherState names;
    for (const NameRow& row : kNames)
        names.*row.name = reader.value(row.setting);
    return names;
}

Launcher::Launcher(const Parts& parts) : m_parts(parts), m_settings{parts.defaults, parts.systemLog} {
}

void Launcher::loadApplicationNames() {
    m_parts.names = savedApplicationNames(m_settings);
    for (const NameRow& row : kNames)
        (m_parts.outlets.*row.field).text.set(m_parts.names.*row.name);
}

void Launcher::autorun() {
    const std::string title = m_settings.value(settings::kAutorunMenuName);
    for (platform::MenuItem* item : autorunItems(m_parts.outlets))
        item->on.set(item->title == title);

    const std::string name = m_settings.value(settings::kAutorunName);
    if (name.empty() || name == "None") {
        m_parts.outlets.autorunNoneMI.on.set(true);
        return;
    }
    activate(name);
    m_parts.log.appendLog("Launching " + name + "\n");
}

void Launcher::setAutorun(platform::MenuItem Outlets::*item, std::string LauncherState::*application) {
    const platform::MenuItem& chosen = m_parts.outlets.*item;
    const std::string name = application == nullptr ? std::string{} : m_parts.names.*application;
    for (platform::MenuItem* each : autorunItems(m_parts.outlets)) {
        each->on.set(each == &chosen);
        if (each != &chosen)
            continue;
        m_parts.defaults.set(settings::kAutorunMenuName.key, chosen.title);
        m_parts.defaults.set(settings::kAutorunName.key, name);
    }
    m_parts.windows.showSheet({"Autolaunch Setting",
                               name.empty() ? "No app will automatically launch."
                                            : "Each time Glimra opens, it will automatically launch\n" + name,
                               {"OK"}});
}

void Launcher::launchApp(std::string LauncherState::*application) {
    if (m_parts.modifiers.optionKeyIsDown())
        editGameNames();
    else
        activate(m_parts.names.*application);
}

void Launcher::editGameNames() {
    const int answer = m_parts.windows.runModal(m_parts.outlets.launchOptionWindow);
    for (const NameRow& row : kNames) {
        std::string& name = m_parts.names.*row.name;
        platform::TextField& field = m_parts.outlets.*row.field;
        if (answer == platform::kModalClosed) {
            field.text.set(name);
            continue;
        }
        name = field.text.get();
        m_parts.defaults.set(row.setting.key, name);
    }
    m_parts.closer.close(m_parts.outlets.launchOptionWindow);
}

void Launcher::launchOptionsOK() {
    m_parts.windows.stopModal(0);
}

void Launcher::activate(const std::string& name) {
    m_parts.childProcesses.start(kScriptingCommand, {activationScript(name)});
}

} // namespace glimra::app
