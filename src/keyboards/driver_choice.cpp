#include "keyboards/driver_choice.h"

#include <algorithm>
#include <utility>

namespace glimra::keyboards {

namespace {

bool takes(const DriverRow& row, Demand demand, DriverChoice& choice) {
    std::string reason = row.take(demand);
    if (reason.empty())
        choice.driver = row.name;
    else
        choice.refusals.push_back({std::string(row.name), std::move(reason)});
    return !choice.driver.empty();
}

} // namespace

DriverChoice chooseDriver(std::span<const DriverRow> rows, std::string_view wanted) {
    DriverChoice choice;
    const auto named = std::ranges::find(rows, wanted, &DriverRow::name);
    if (named != rows.end()) {
        if (takes(*named, Demand::Anyway, choice))
            return choice;
    } else if (wanted != kAutomaticDriver) {
        choice.refusals.push_back({std::string(wanted), "There is no such driver."});
    }
    for (auto row = rows.begin(); row != rows.end(); ++row)
        if (row != named && takes(*row, Demand::IfPresent, choice))
            break;
    return choice;
}

std::vector<std::string> describe(const DriverChoice& choice) {
    std::vector<std::string> lines;
    for (const Refusal& refusal : choice.refusals)
        lines.push_back("Keyboard driver " + refusal.driver + ": " + refusal.reason);
    lines.push_back("Keyboard driver: " + (choice.driver.empty() ? "none" : choice.driver));
    return lines;
}

} // namespace glimra::keyboards
