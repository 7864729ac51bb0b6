#include "desktop/doctor/doctor.h"

#include "desktop/doctor/checks.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iterator>

namespace glimra::desktop::doctor {

namespace {

Findings examine(const Subject& subject) {
    Findings all = checkScreen(subject);
    for (Findings& findings :
         std::array{checkKeyboards(subject.keyboard), checkAddon(subject.settings.values()), checkServices(),
                    checkSettings(subject.settings)})
        std::ranges::move(findings, std::back_inserter(all));
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
