#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace glimra::tests {

/// A new folder that only this user can read, as sockets want it. It goes with the test program.
inline std::filesystem::path newFolder() {
    static int number = 0;
    const std::filesystem::path folder = testing::TempDir() + std::to_string(++number);
    std::filesystem::create_directory(folder);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    return folder;
}

/// A file's content, empty when there is none.
inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace glimra::tests
