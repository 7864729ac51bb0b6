// Runs a fuzz target over its seeds and over a fixed number of damaged ones, the same in every run.
//   TARGET COUNT
//   TARGET --write FOLDER    writes the seeds, as a corpus for libFuzzer

#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string_view>

namespace {

using glimra::tests::FuzzSeed;
using Bytes = std::vector<std::uint8_t>;

/// Seeds with up to six damages each, the same in every run.
class Damage {
public:
    explicit Damage(const std::vector<FuzzSeed>& seeds) : m_seeds(seeds) {}

    Bytes next() {
        Bytes bytes = anySeed();
        for (std::size_t times = 1 + below(6); times > 0 && !bytes.empty(); --times)
            damage(bytes);
        return bytes;
    }

private:
    const Bytes& anySeed() { return m_seeds[below(m_seeds.size())].bytes; }
    // The library's distributions may differ from one system to the next, this does not.
    std::size_t below(std::size_t bound) { return m_random() % bound; }

    void damage(Bytes& bytes) {
        const std::size_t at = below(bytes.size());
        const auto here = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        const auto there =
            here + static_cast<std::ptrdiff_t>(1 + below(std::min<std::size_t>(bytes.size() - at, 64)));
        switch (below(5)) {
        case 0:
            *here ^= static_cast<std::uint8_t>(1U << below(8));
            break;
        case 1:
            overwriteNumber(bytes, at);
            break;
        case 2:
            bytes.resize(at);
            break;
        case 3:
            bytes.erase(here, there);
            break;
        default: {
            const Bytes copy(here, there);
            bytes.insert(here, copy.begin(), copy.end());
        }
        }
    }

    /// Puts a number of two or four bytes there that is likely to be wrong.
    void overwriteNumber(Bytes& bytes, std::size_t at) {
        const std::uint32_t power = 1U << below(32);
        const std::uint32_t number = power - static_cast<std::uint32_t>(below(3));
        const std::size_t size = std::min<std::size_t>(bytes.size() - at, below(2) == 0 ? 2 : 4);
        for (std::size_t i = 0; i < size; ++i)
            bytes[at + i] = static_cast<std::uint8_t>(number >> (8 * i));
    }

    const std::vector<FuzzSeed>& m_seeds;
    std::mt19937 m_random{20261122};
};

bool write(const FuzzSeed& seed, const std::filesystem::path& folder) {
    std::ofstream file(folder / seed.name, std::ios::binary);
    file.write(reinterpret_cast<const char*>(seed.bytes.data()),
               static_cast<std::streamsize>(seed.bytes.size()));
    return static_cast<bool>(file.flush());
}

} // namespace

int main(int argc, char** argv) {
    const std::vector<FuzzSeed> seeds = glimra::tests::fuzzSeeds();
    if (argc == 3 && std::string_view(argv[1]) == "--write") {
        std::filesystem::create_directories(argv[2]);
        const auto isWritten = [&](const FuzzSeed& seed) { return write(seed, argv[2]); };
        return std::all_of(seeds.begin(), seeds.end(), isWritten) ? 0 : 1;
    }
    const unsigned long count = argc == 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
    if (count == 0) {
        std::fprintf(stderr, "how many inputs?\n");
        return 2;
    }
    for (const FuzzSeed& seed : seeds)
        LLVMFuzzerTestOneInput(seed.bytes.data(), seed.bytes.size());
    Damage damage(seeds);
    for (unsigned long input = 0; input < count; ++input) {
        const Bytes bytes = damage.next();
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%zu seeds and %lu damaged ones\n", seeds.size(), count);
    return 0;
}
