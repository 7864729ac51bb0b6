#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace glimra::desktop {

/// A file that is written line by line, each flushed at once, so that it is complete when something goes
/// wrong.
class OutputFile {
public:
    /// Creates or empties the file. Throws std::system_error when it cannot be written.
    explicit OutputFile(const std::string& path);

    const std::string& path() const { return m_path; }
    /// Returns false when writing failed; after that, nothing more is written.
    bool append(std::string_view lines);

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::string m_path;
    std::unique_ptr<std::FILE, Close> m_file;
};

} // namespace glimra::desktop
