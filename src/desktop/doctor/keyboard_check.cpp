#include "desktop/doctor/checks.h"

#include <array>
#include <filesystem>
#include <map>

namespace glimra::desktop::doctor {

namespace {

constexpr std::array<std::string_view, 5> kRuleFolders{"/etc/udev/rules.d", "/run/udev/rules.d",
                                                       "/usr/local/lib/udev/rules.d", "/usr/lib/udev/rules.d",
                                                       "/lib/udev/rules.d"};

Finding ruleFinding() {
    for (const std::string_view folder : kRuleFolders) {
        const std::filesystem::path file = std::filesystem::path(folder) / keyboards::kUdevRuleFile;
        std::error_code error;
        if (std::filesystem::exists(file, error))
            return {.check = "udev-rule",
                    .text = "The rule that opens USB keyboards is " + file.string() + "."};
    }
    return {.check = "udev-rule",
            .health = Health::Limited,
            .text = "The rule that opens USB keyboards to you is not installed. Only the keyboards that the "
                    "driver usb lights need it.",
            .remedy =
                "Install Glimra's package or, in the folder of Glimra's source: sudo cp packaging/udev/" +
                std::string(keyboards::kUdevRuleFile) +
                " /etc/udev/rules.d && sudo udevadm control --reload && sudo udevadm trigger "
                "--action=change --subsystem-match=hidraw"};
}

/// Which driver lights the keyboard, by the results of looking with each.
Finding choiceFinding(const keyboards::ChosenKeyboard::Options& wanted,
                      const std::map<std::string_view, keyboards::OpenResult>& seen) {
    std::vector<std::string> lighting;
    for (const keyboards::DriverRow* const driver : keyboards::candidates(wanted.driver))
        if (seen.at(driver->name).found)
            lighting.emplace_back(driver->name);
    const std::string& taken = lighting.front();
    const bool isAutomatic = wanted.driver == keyboards::kAutomaticDriver;
    const keyboards::OpenResult& openRgb = seen.at("openrgb");
    const bool lacksBoard = !wanted.drivers.openRgb.keyboardName.empty() && !openRgb.found;

    Finding choice{.check = "keyboard", .text = "The driver is " + wanted.driver + "."};
    if (isAutomatic)
        choice.text = "The driver is chosen automatically: " + taken + ".";
    if (keyboards::findDriver(taken)->start != nullptr)
        choice.text += " If its library does not start: " + lighting.at(1) + ".";
    if ((!isAutomatic && taken != wanted.driver) || lacksBoard) {
        choice.health = Health::Bad;
        choice.text += " The keyboard that you named cannot be lit now.";
        choice.remedy = (lacksBoard ? openRgb : seen.at(wanted.driver)).remedy;
    }
    choice.details["wanted"] = wanted.driver;
    choice.details["taken"] = taken;
    return choice;
}

} // namespace

Findings checkKeyboards(const keyboards::ChosenKeyboard::Options& wanted) {
    Findings findings;
    std::map<std::string_view, keyboards::OpenResult> seen;
    for (const keyboards::DriverRow& driver : keyboards::driverRows()) {
        const keyboards::OpenResult& result =
            seen.emplace(driver.name, driver.look(wanted.drivers)).first->second;
        findings.push_back({.check = "keyboard-" + std::string(driver.name),
                            .health = result.found ? Health::Good : Health::Limited,
                            .text = result.text,
                            .remedy = result.remedy});
    }
    findings.push_back(ruleFinding());
    findings.push_back(choiceFinding(wanted, seen));
    return findings;
}

Findings lookAtKeyboards(const keyboards::DriverOptions& options) {
    Findings findings;
    for (const keyboards::DriverRow& driver : keyboards::driverRows())
        if (driver.looksAtFiles && driver.makeDevice != nullptr)
            if (const keyboards::OpenResult seen = driver.look(options); !seen.found)
                findings.push_back({.check = "keyboard-" + std::string(driver.name),
                                    .health = Health::Limited,
                                    .text = seen.text,
                                    .remedy = seen.remedy});
    const Finding rule = ruleFinding();
    if (rule.health != Health::Good)
        findings.push_back(rule);
    return findings;
}

} // namespace glimra::desktop::doctor
