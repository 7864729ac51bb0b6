#pragma once

#include "platform/system_services.h"

#include <random>

namespace glimra::desktop {

/// Writes to standard error, which desktop sessions usually keep in the journal.
class StderrSystemLog final : public platform::SystemLog {
public:
    void write(std::string_view line) override;
};

class RandomNumbers final : public platform::RandomNumbers {
public:
    std::uint32_t uniform(std::uint32_t upperBound) override;

private:
    std::mt19937 m_engine{std::random_device{}()};
};

class Modifiers final : public platform::Modifiers {
public:
    /// The Alt key.
    bool optionKeyIsDown() const override;
};

} // namespace glimra::desktop
