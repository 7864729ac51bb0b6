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

TEST(SeededRandomTest, EveryRemainderIsEquallyLikely) {
    // Three quarters of all numbers: plain remainders would come out below a third of the bound half of the
    // time.
    constexpr std::uint32_t kBound = 3U << 30U;
    SeededRandom random(1);
    std::array<int, 3> thirds{};
    constexpr int kDraws = 30'000;
    for (int i = 0; i < kDraws; ++i)
        ++thirds.at(random.uniform(kBound) >> 30U);
    for (const int count : thirds)
        EXPECT_NEAR(count, kDraws / 3, kDraws / 50);
    EXPECT_EQ(random.uniform(1), 0U);
}

} // namespace
} // namespace glimra::simulated
