#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

using FuzzInput = std::vector<std::uint8_t>;

/// What a fuzz target offers: one input, and sound inputs to begin from.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
std::vector<FuzzInput> fuzzSeeds();
