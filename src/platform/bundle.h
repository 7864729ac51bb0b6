#pragma once

#include <string>

namespace glimra::platform {

/// What the build and the package know about the program.
struct Bundle {
    std::string shortVersion;
    /// The build number, in decimal.
    std::string version;
    std::string copyright;
    std::string homePage;
    std::string downloadPage;
    std::string supportAddress;
    /// The help text, as rich text (RTF).
    std::string helpText;
    /// Version of the vendor's LED framework; empty when it is not installed.
    std::string ledFrameworkVersion;
};

} // namespace glimra::platform
