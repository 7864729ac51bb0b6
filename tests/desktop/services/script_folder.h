#pragma once

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <thread>

namespace glimra::tests {

/// A folder of small programs that stand in front of all others in PATH, and of the files that they write.
/// It is where XDG's data folders are, too.
class ScriptFolder {
public:
    ScriptFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "glimra-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("no temporary folder");
        m_path = name;
        ::setenv("PATH", (name + ":/usr/bin:/bin").c_str(), 1);
        ::setenv("XDG_DATA_HOME", (name + "/home").c_str(), 1);
        ::setenv("XDG_DATA_DIRS", (name + "/first:" + name + "/second").c_str(), 1);
        ::setenv("OUT", name.c_str(), 1);
    }
    ~ScriptFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScriptFolder(const ScriptFolder&) = delete;
    ScriptFolder& operator=(const ScriptFolder&) = delete;

    std::string path(const std::string& name) const { return (m_path / name).string(); }

    void addFile(const std::string& name, const std::string& content) const {
        std::filesystem::create_directories((m_path / name).parent_path());
        std::ofstream(m_path / name, std::ios::binary) << content;
    }
    /// A program in the shell's language; $OUT is this folder.
    void addScript(const std::string& name, const std::string& body) const {
        addFile(name, "#!/bin/sh\n" + body + "\n");
        std::filesystem::permissions(m_path / name, std::filesystem::perms::owner_all);
    }
    /// The file's content, empty when there is none.
    std::string content(const std::string& name) const {
        std::ifstream file(m_path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    std::filesystem::path m_path;
};

/// Waits until `condition` holds, 10 seconds at most; whether it does.
template <class Condition>
bool soon(Condition&& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    return true;
}

/// How long it takes, in milliseconds.
template <class Action>
long long millisecondsOf(Action&& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start)
        .count();
}

} // namespace glimra::tests
