#include "app/launcher.h"

#include <array>

namespace glimra::app {

namespace {

constexpr const char* kScriptingCommand = "/usr/bin/osascript";
constexpr std::string_view kAutorunTitleKey = "AutorunMenuName";
constexpr std::string_view kAutorunNameKey = "AutorunName";

/// One application name: its setting, its place in memory and its text field.
struct NameRow {
    std::string_view key;
    std::string LauncherState::*name;
    platform::TextField Outlets::*field;
};

constexpr std::array<NameRow, 3> kNames{{
    {"WowAppName", &LauncherState::WowAppName, &Outlets::WoWAppNameField},
    {"WowClassicAppName", &LauncherState::WowClassicAppName, &Outlets::WoWClassicAppNameField},
    {"BNAppName", &LauncherState::BNAppName, &Outlets::BNAppNameField},
}};

std::optional<std::string> storedName(const platform::SettingsReader& settings, std::string_view key) {
    return settings.checked(platform::storedString(settings.defaults, key), key,
                            "is no text and is ignored.");
}

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

LauncherState savedApplicationNames(const platform::SettingsReader& settings) {
    LauncherState names;
    for (const NameRow& row : kNames) {
        std::string& name = names.*row.name;
        name = storedName(settings, row.key).value_or(name);
    }
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
    const std::optional<std::string> title = storedName(m_settings, kAutorunTitleKey);
    for (platform::MenuItem* item : autorunItems(m.outlets))
        item->on.set(item->title == title);

    const std::string name = storedName(m_settings, kAutorunNameKey).value_or("");
    if (name.empty() || name == "None") {
        m.outlets.autorunNoneMI.on.set(true);
        return;
    }
    activate(name);
    m.log.appendLog("Launching " + name + "\n");
}

void Launcher::setAutorun(platform::MenuItem Outlets::*item, std::string LauncherState::*application) {
    const platform::MenuItem& chosen = m.outlets.*item;
    const std::string name = application == nullptr ? std::string{} : m.names.*application;
    for (platform::MenuItem* each : autorunItems(m.outlets)) {
        each->on.set(each == &chosen);
        if (each != &chosen)
            continue;
        m.defaults.set(kAutorunTitleKey, chosen.title);
        m.defaults.set(kAutorunNameKey, name);
    }
    m.windows.showSheet({"Autolaunch Setting",
                         name.empty() ? "No app will automatically launch."
                                      : "Each time Glimra opens, it will automatically launch\n" + name,
                         {"OK"}});
}

void Launcher::launchApp(std::string LauncherState::*application) {
    if (m.modifiers.optionKeyIsDown())
        editGameNames();
    else
        activate(m.names.*application);
}

void Launcher::editGameNames() {
    m.windows.runModal(m.outlets.launchOptionWindow);
    for (const NameRow& row : kNames) {
        m.names.*row.name = (m.outlets.*row.field).text.get();
        m.defaults.set(row.key, m.names.*row.name);
    }
    m.closer.close(m.outlets.launchOptionWindow);
}

void Launcher::launchOptionsOK() {
    m.windows.stopModal(0);
}

void Launcher::activate(const std::string& name) {
    m.childProcesses.start(kScriptingCommand, {activationScript(name)});
}

} // namespace glimra::app
