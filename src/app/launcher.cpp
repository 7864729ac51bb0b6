#include "app/launcher.h"

#include "platform/stored_values.h"

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

Launcher::Launcher(const Parts& parts) : m(parts) {
}

void Launcher::loadApplicationNames() {
    for (const NameRow& row : kNames) {
        std::string& name = m.names.*row.name;
        name = storedName(row.key).value_or(name);
        (m.outlets.*row.field).text.set(name);
    }
}

void Launcher::autorun() {
    const std::optional<std::string> title = storedName(kAutorunTitleKey);
    for (platform::MenuItem* item : autorunItems(m.outlets))
        item->on.set(item->title == title);

    const std::string name = storedName(kAutorunNameKey).value_or("");
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
        m.defaults.set(kAutorunTitleKey, item.title);
        m.defaults.set(kAutorunNameKey, name);
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
        m.defaults.set(row.key, m.names.*row.name);
    }
    m.closer.close(m.outlets.launchOptionWindow);
}

std::optional<std::string> Launcher::storedName(std::string_view key) const {
    const platform::SettingsReader reader{m.defaults, m.systemLog};
    return reader.checked(platform::storedString(m.defaults, key), key, "is no text and is ignored.");
}

void Launcher::activate(const std::string& name) {
    m.childProcesses.start(kScriptingCommand, {activationScript(name)});
}

} // namespace glimra::app
