#include "desktop/doctor/checks.h"

#include <array>
#include <filesystem>

namespace glimra::desktop::doctor {

namespace {

using keyboards::ChosenKeyboard;

constexpr std::array<std::string_view, 5> kRuleFolders{"/etc/udev/rules.d", "/run/udev/rules.d",
                                                       "/usr/local/lib/udev/rules.d", "/usr/lib/udev/rules.d",
                                                       "/lib/udev/rules.d"};

/// Why a driver lights no keyboard (empty when it does), or else a sentence about what it lights.
struct Trial {
    std::string reason;
    std::string text{};
};

Trial trySdk(const ChosenKeyboard::Options& options) {
    keyboards::SdkDriver driver(options.sdkLibraries);
    if (!driver.LogiLedInit())
        return {driver.reason()};
    driver.LogiLedShutdown();
    return {{}, "The library " + driver.library().string() + " works."};
}

Trial tryUsb(const ChosenKeyboard::Options& options) {
    const std::string reason = keyboards::whyNoUsbKeyboard(options.hidFolders);
    if (!reason.empty())
        return {reason};
    return {{},
            "The keyboard " + describe(*keyboards::findHidNodes(options.hidFolders).front().model) +
                " is there and may be opened."};
}

Trial tryOpenRgb(const ChosenKeyboard::Options& options) {
    const keyboards::openrgb::ServerAddress& server = options.openRgb.server;
    if (!keyboards::openrgb::mayListen(server))
        return {"There is no OpenRGB server on " + server.host + ":" + std::to_string(server.port) + "."};
    const keyboards::WakeEvent stop;
    keyboards::openrgb::OpenRgbDevice device(options.openRgb);
    const keyboards::OpenResult result = device.open(stop);
    if (!result.found)
        return {result.text};
    device.close();
    return {{}, result.text};
}

struct DriverTrial {
    std::string_view driver;
    Trial (*tryIt)(const ChosenKeyboard::Options& options);
};

/// In the order in which the application tries them.
constexpr std::array<DriverTrial, 4> kTrials{{
    {"sdk", &trySdk},
    {"usb", &tryUsb},
    {"openrgb", &tryOpenRgb},
    {"virtual",
     [](const ChosenKeyboard::Options&) {
         return Trial{{}, "The keyboard in the window always works."};
     }},
}};

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

Findings checkKeyboards(const ChosenKeyboard::Options& wanted) {
    Findings findings;
    std::string first;
    bool wantedWorks = wanted.driver == keyboards::kAutomaticDriver;
    for (const DriverTrial& trial : kTrials) {
        const Trial result = trial.tryIt(wanted);
        const bool works = result.reason.empty();
        if (works && first.empty())
            first = trial.driver;
        wantedWorks |= works && trial.driver == wanted.driver;
        findings.push_back({.check = "keyboard-" + std::string(trial.driver),
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

} // namespace glimra::desktop::doctor
