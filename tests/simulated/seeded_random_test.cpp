#include "simulated/seeded_random.h"

#include <gtest/gtest.h>

#include <array>

namespace glimra::simulated {
namespace {

TEST(SeededRandomTest, SameNumbersEverywhereForTheSameSeed) {
    SeededRandom random(5489); // the generator's published tenthousandth number belongs to this seed
    for (int i = 0; i < 9999; ++i)
        random.uniform(1U << 31U);
    EXPECT_EQ(random.uniform(1U << 31U), 4123659995U % (1U << 31U));
}

} // namespace
} // namespace glimra::simulated
