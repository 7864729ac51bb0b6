#include "desktop/doctor/checks.h"

#include <array>
#include <filesystem>

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
            .text = "The rule that opens USB keyboards to you is not installed.",
            .remedy = "Install Glimra's package, or copy " + std::string(keyboards::kUdevRuleFile) +
                      " to /etc/udev/rules.d and plug the keyboard in again. Only keyboards on USB need it."};
}

} // namespace

Findings checkKeyboards(const keyboards::ChosenKeyboard::Options& wanted) {
    Findings findings;
    std::string first;
    bool wantedWorks = wanted.driver == keyboards::kAutomaticDriver;
    for (const keyboards::DriverRow& driver : keyboards::driverRows()) {
        const keyboards::DriverTrial result = driver.tryIt(wanted.drivers);
        const bool works = result.reason.empty();
        if (works && first.empty())
            first = driver.name;
        wantedWorks |= works && driver.name == wanted.driver;
        findings.push_back({.check = "keyboard-" + std::string(driver.name),
                            .health = works ? Health::Good : Health::Limited,
                            .text = works ? result.text : result.reason});
    }
    findings.push_back(ruleFinding());

    Finding choice{.check = "keyboard", .text = "The driver is " + wanted.driver + "."};
    if (wanted.driver == keyboards::kAutomaticDriver)
        choice.text = "The driver is chosen automatically: " + first + ".";
    if (!wantedWorks) {
        choice.health = Health::Limited;
        choice.remedy =
            "That driver lights nothing now; choose another one in the window or with --keyboard.";
    }
    choice.details["wanted"] = wanted.driver;
    choice.details["taken"] =
        wantedWorks && wanted.driver != keyboards::kAutomaticDriver ? wanted.driver : first;
    findings.push_back(std::move(choice));
    return findings;
}

Findings lookAtKeyboards(const keyboards::DriverOptions& options) {
    Findings findings;
    for (const keyboards::DriverRow& driver : keyboards::driverRows()) {
        const std::string reason = driver.look == nullptr ? "" : driver.look(options);
        if (!reason.empty())
            findings.push_back(
                {.check = "keyboard-" + std::string(driver.name), .health = Health::Limited, .text = reason});
    }
    const Finding rule = ruleFinding();
    if (rule.health != Health::Good)
        findings.push_back(rule);
    return findings;
}

} // namespace glimra::desktop::doctor
