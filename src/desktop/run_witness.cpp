#include "desktop/run_witness.h"

#include <array>

namespace glimra::desktop {

namespace {

struct WitnessRow {
    std::optional<std::string> Options::*file;
    std::unique_ptr<RunWitness> (*make)(const std::string& file, const platform::Platform& machine);
};

/// In order from the machine to the application.
constexpr std::array<WitnessRow, 2> kWitnesses{{
    {&Options::recordFile, &recordRun},
    {&Options::traceFile, &traceRun},
}};

} // namespace

RunWitnesses::RunWitnesses(const Options& options, const platform::Platform& machine) : m_machine(machine) {
    for (const WitnessRow& row : kWitnesses)
        if (options.*row.file)
            m_witnesses.push_back(row.make(*(options.*row.file), platform()));
}

const platform::Platform& RunWitnesses::platform() const {
    return m_witnesses.empty() ? m_machine : m_witnesses.back()->platform();
}

} // namespace glimra::desktop
