#include "desktop/doctor/doctor.h"

#include "desktop/doctor/checks.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace glimra::desktop::doctor {

namespace {

/// Whether a folder's name ends or begins beside this character.
bool isBesideName(char character) {
    return std::isalnum(static_cast<unsigned char>(character)) == 0 && character != '_' && character != '-';
}

/// Reports are sent to others, whom the user's name does not concern.
void shortenHome(std::string& text, const std::string& home) {
    for (std::size_t at = text.find(home); at != std::string::npos; at = text.find(home, at + 1)) {
        const std::size_t end = at + home.size();
        const bool begins = at == 0 || (isBesideName(text[at - 1]) && text[at - 1] != '/');
        if (begins && (end == text.size() || isBesideName(text[end])))
            text.replace(at, home.size(), "~");
    }
}

void shortenHome(nlohmann::ordered_json& value, const std::string& home) {
    if (value.is_string())
        return shortenHome(value.get_ref<std::string&>(), home);
    if (value.is_structured())
        for (nlohmann::ordered_json& each : value)
            shortenHome(each, home);
}

/// As the environment names it, and as the system resolves it.
std::vector<std::string> namesOfHome() {
    const char* const variable = std::getenv("HOME");
    std::filesystem::path home = variable == nullptr ? "" : variable;
    std::error_code ignored;
    std::vector<std::string> names;
    for (const std::filesystem::path& each : {home, std::filesystem::canonical(home, ignored)}) {
        std::string name = each.lexically_normal().string();
        name.erase(name.find_last_not_of('/') + 1);
        if (name.starts_with('/'))
            names.push_back(std::move(name));
    }
    return names;
}

Findings examine(const Subject& subject) {
    Findings all = checkScreen(subject);
    for (Findings& findings :
         std::array{checkKeyboards(subject.keyboard), checkAddon(subject.settings.values()), checkServices(),
                    checkSettings(subject.settings)})
        std::ranges::move(findings, std::back_inserter(all));
    for (const std::string& home : namesOfHome())
        for (Finding& finding : all) {
            shortenHome(finding.text, home);
            shortenHome(finding.remedy, home);
            shortenHome(finding.details, home);
        }
    return all;
}

const char* nameOf(Health health) {
    switch (health) {
    case Health::Good:
        return "good";
    case Health::Limited:
        return "limited";
    case Health::Bad:
        return "bad";
    }
    return "";
}

void printWords(const Findings& findings, bool works) {
    for (const Finding& finding : findings) {
        std::printf("%-8s %-17s %s\n", nameOf(finding.health), finding.check.c_str(), finding.text.c_str());
        if (!finding.remedy.empty())
            std::printf("%-8s %-17s -> %s\n", "", "", finding.remedy.c_str());
    }
    std::puts(works ? "\nGlimra can work here." : "\nGlimra can't work here; see what is called bad.");
}

void printJson(const Findings& findings, bool works) {
    nlohmann::ordered_json checks = nlohmann::ordered_json::array();
    for (const Finding& finding : findings)
        checks.push_back({{"check", finding.check},
                          {"health", nameOf(finding.health)},
                          {"text", finding.text},
                          {"remedy", finding.remedy},
                          {"details", finding.details}});
    const nlohmann::ordered_json report{{"version", GLIMRA_VERSION}, {"works", works}, {"checks", checks}};
    std::puts(report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace).c_str());
}

} // namespace

int runDoctor(const Subject& subject, ReportForm form) {
    const Findings findings = examine(subject);
    const bool works = std::ranges::none_of(
        findings, [](Health health) { return health == Health::Bad; }, &Finding::health);
    if (form == ReportForm::Json)
        printJson(findings, works);
    else
        printWords(findings, works);
    return works ? EXIT_SUCCESS : EXIT_FAILURE;
}

} // namespace glimra::desktop::doctor
