// Tries the same inputs in every run: each seed as it is, cut off at every length, and damaged at random.
#include "fuzz/fuzz_target.h"

#include <cstdio>
#include <random>

namespace {

constexpr int kDamagedInputs = 20000;
constexpr std::size_t kCuts = 500;

void run(const FuzzInput& input) {
    // A copy of its own, so that a sanitizer sees a read behind its end.
    const FuzzInput exact(input);
    LLVMFuzzerTestOneInput(exact.data(), exact.size());
}

FuzzInput damaged(FuzzInput input, std::mt19937& random) {
    const auto below = [&random](std::size_t limit) { return random() % limit; };
    const std::size_t changes = 1 + below(8);
    for (std::size_t i = 0; i < changes && !input.empty(); ++i) {
        const auto at = input.begin() + static_cast<std::ptrdiff_t>(below(input.size()));
        switch (below(4)) {
        case 0:
            *at = static_cast<std::uint8_t>(below(256));
            break;
        case 1:
            *at = below(2) == 0 ? 0xFF : 0x00;
            break;
        case 2:
            input.insert(at, 1 + below(9), static_cast<std::uint8_t>(below(256)));
            break;
        default:
            input.erase(at, below(3) == 0 ? input.end() : at + 1);
        }
    }
    return input;
}

} // namespace

int main() {
    std::mt19937 random(20260101);
    const std::vector<FuzzInput> seeds = fuzzSeeds();
    run({});
    for (const FuzzInput& seed : seeds) {
        run(seed);
        for (std::size_t length = 0; length < seed.size(); length += 1 + seed.size() / kCuts)
            run({seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(length)});
    }
    for (int i = 0; i < kDamagedInputs; ++i)
        run(damaged(seeds[random() % seeds.size()], random));
    std::printf("%d damaged inputs from %zu seeds\n", kDamagedInputs, seeds.size());
}
