#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

// What a fuzz target is made of. It runs under libFuzzer, or under fixed_inputs.cpp with any compiler.

/// Takes any bytes; aborts when something that must hold does not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace glimra::tests {

struct FuzzSeed {
    std::string name;
    std::vector<std::uint8_t> bytes;
};

/// Sound inputs of every kind, to start from.
std::vector<FuzzSeed> fuzzSeeds();

inline void must(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

} // namespace glimra::tests
