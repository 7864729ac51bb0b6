#pragma once

#include "platform/system_services.h"

#include <string>
#include <vector>

namespace glimra::tests {

/// Remembers what is written to the system log.
class SystemLines final : public platform::SystemLog {
public:
    std::vector<std::string> lines;

    void write(std::string_view line) override { lines.emplace_back(line); }
};

} // namespace glimra::tests
