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
    std::string script = "-e tell application \"";
    for (const char c : name) {
        if (c == '"' || c == '\\')
            script += '\\';
        script += c;
    }
    return script + "\" to activate";
}

LauncherState savedApplicationNames(const platform::SettingsReader& reader) {
    LauncherState names;
    for (const NameRow& row : kNames)
        names.*row.name = reader.value(row.setting);
    return names;
}

Launcher::Launcher(const Parts& parts) : m(parts), m_settings{parts.defaults, parts.systemLog} {
}

void Launcher::loadApplicationNames() {
    m.names = savedApplicationNames(m_settings);
    for (const NameRow& row : kNames)
        (m.outlets.*row.field).text.set(m.names.*row.name);
}

void Launcher::autorun() {
    const std::string title = m_settings.value(settings::kAutorunMenuName);
    for (platform::MenuItem* item : autorunItems(m.outlets))
        item->on.set(item->title == title);

    const std::string name = m_settings.value(settings::kAutorunName);
    if (name.empty() || name == "None") {
        m.outlets.autorunNoneMI.on.set(true);
        return;
    }
    activate(name);
    m.log.appendLog("Launching " + name + "\n");
}

void Launcher::setAutorun(const platform::MenuItem& item, const std::string& name) {
    for (platform::MenuItem* each : autorunItems(m.outlets)) {
        each->on.set(each == &item);
        if (each != &item)
            continue;
        m.defaults.set(settings::kAutorunMenuName.key, item.title);
        m.defaults.set(settings::kAutorunName.key, name);
    }
    m.windows.showSheet({"Autolaunch Setting",
                         name.empty() ? "No app will automatically launch."
                                      : "Each time Glimra opens, it will automatically launch\n" + name,
                         {"OK"}});
}

void Launcher::launchApp(const std::string& name) {
    if (m.modifiers.optionKeyIsDown())
        editGameNames();
    else
        activate(name);
}

void Launcher::editGameNames() {
    m.windows.runModal(m.outlets.launchOptionWindow);
    for (const NameRow& row : kNames) {
        m.names.*row.name = (m.outlets.*row.field).text.get();
        m.defaults.set(row.setting.key, m.names.*row.name);
    }
    m.closer.close(m.outlets.launchOptionWindow);
}

void Launcher::activate(const std::string& name) {
    m.childProcesses.start(kScriptingCommand, {activationScript(name)});
}

} // namespace glimra::app
