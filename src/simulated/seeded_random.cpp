#include "simulated/seeded_random.h"

namespace glimra::simulated {

std::uint32_t SeededRandom::uniform(std::uint32_t upperBound) {
    // std::uniform_int_distribution gives different results in different libraries. Of the 2^32 numbers, the
    // first 2^32 mod upperBound are rejected, so that every remainder is equally likely.
    const std::uint32_t tooLow = (0U - upperBound) % upperBound;
    std::uint32_t drawn = 0;
    do
        drawn = static_cast<std::uint32_t>(m_generator());
    while (drawn < tooLow);
    return drawn % upperBound;
}

} // namespace glimra::simulated
