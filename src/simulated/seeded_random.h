#pragma once

#include "platform/system_services.h"

#include <random>

namespace glimra::simulated {

/// Gives the same numbers for the same seed, on every machine and with every standard library.
class SeededRandom final : public platform::RandomNumbers {
public:
    explicit SeededRandom(std::uint32_t seed) : m_generator(seed) {}

    std::uint32_t uniform(std::uint32_t upperBound) override;

private:
    std::mt19937 m_generator;
};

} // namespace glimra::simulated
