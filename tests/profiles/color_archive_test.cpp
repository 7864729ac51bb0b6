#include "profiles/color_archive.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace glimra::profiles {
namespace {

platform::Data bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(ColorArchiveTest, KeepsEveryBitAsReadableText) {
    EXPECT_EQ(archiveColor({1.0, 0.5, 0.1}), bytes("sRGB 1.0 0.5 0.1 1.0"));
    const double tiny = std::numeric_limits<double>::denorm_min();
    for (const platform::Color& color :
         {platform::Color{std::nextafter(0.1, 1.0), 1.0 / 3.0, tiny}, {-0.25, 1.5, 1e300}})
        EXPECT_EQ(unarchiveColor(archiveColor(color)), color);
}

TEST(ColorArchiveTest, WhateverElseIsStoredIsNoColour) {
    EXPECT_EQ(unarchiveColor(bytes("sRGB 0 1e-2 .5 0.3")), (platform::Color{0.0, 0.01, 0.5}));
    for (const char* damaged :
         {"", "sRGB", "sRGB ", "sRGB 1.0 0.5 0.1", "sRGB 1.0 0.5 0.1 1.0 ", "sRGB 1.0 0.5 0.1 1.0x",
          "sRGB 1.0  0.5 0.1 1.0", "srgb 1.0 0.5 0.1 1.0", "sRGB inf 0 0 1", "sRGB 0 nan 0 1",
          "sRGB 1e999 0 0 1", "\x04\x0bstreamtyped\x81\xe8\x03", "P3 1.0 0.5 0.1 1.0"})
        EXPECT_FALSE(unarchiveColor(bytes(damaged))) << damaged;
    EXPECT_FALSE(unarchiveColor(bytes("sRGB 0 0 0 1" + std::string(5000, '0'))));
}

} // namespace
} // namespace glimra::profiles
