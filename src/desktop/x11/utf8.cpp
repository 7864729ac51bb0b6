#include "desktop/x11/utf8.h"

#include <array>
#include <cstddef>

namespace glimra::desktop {

namespace {

/// Lead bytes of characters with the same length and the same range for the second byte.
struct Sequence {
    unsigned char firstLead, lastLead;
    std::size_t length;
    unsigned char secondMin, secondMax;
};

constexpr std::array<Sequence, 9> kSequences{{
    {0x00, 0x7F, 1, 0, 0},
    {0xC2, 0xDF, 2, 0x80, 0xBF},
    {0xE0, 0xE0, 3, 0xA0, 0xBF},
    {0xE1, 0xEC, 3, 0x80, 0xBF},
    {0xED, 0xED, 3, 0x80, 0x9F},
    {0xEE, 0xEF, 3, 0x80, 0xBF},
    {0xF0, 0xF0, 4, 0x90, 0xBF},
    {0xF1, 0xF3, 4, 0x80, 0xBF},
    {0xF4, 0xF4, 4, 0x80, 0x8F},
}};

struct Part {
    std::size_t length;
    bool isComplete;
};

/// The character, complete or cut off, at the beginning of `bytes`, which must not be empty.
Part firstPart(std::string_view bytes) {
    const auto byteAt = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    for (const Sequence& sequence : kSequences) {
        if (byteAt(0) < sequence.firstLead || byteAt(0) > sequence.lastLead)
            continue;
        for (std::size_t i = 1; i < sequence.length; ++i) {
            const unsigned char min = i == 1 ? sequence.secondMin : 0x80;
            const unsigned char max = i == 1 ? sequence.secondMax : 0xBF;
            if (i >= bytes.size() || byteAt(i) < min || byteAt(i) > max)
                return {i, false};
        }
        return {sequence.length, true};
    }
    return {1, false};
}

} // namespace

std::string validUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    while (!bytes.empty()) {
        const Part part = firstPart(bytes);
        text += part.isComplete ? bytes.substr(0, part.length) : std::string_view("\xEF\xBF\xBD");
        bytes.remove_prefix(part.length);
    }
    return text;
}

} // namespace glimra::desktop
