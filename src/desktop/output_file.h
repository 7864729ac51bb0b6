#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace glimra::desktop {

/// A file about a run, for its owner alone, that is written line by line, each flushed at once, so that it is
/// complete when something goes wrong.
class OutputFile {
public:
    static constexpr std::size_t kMostBytes = std::size_t{64} << 20;

    /// Creates or empties the file. Throws a std::runtime_error that says why when it cannot be written, or
    /// is a link, a pipe, a device or another user's: such a file is neither waited for nor changed.
    explicit OutputFile(const std::string& path, std::size_t mostBytes = kMostBytes);

    const std::string& path() const { return m_path; }
    /// Writes all the lines or nothing. Returns why nothing more is written, as the end of a sentence about
    /// the file, from then on always; empty while it goes on.
    std::string append(std::string_view lines);

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::string m_path;
    std::unique_ptr<std::FILE, Close> m_file;
    std::size_t m_bytesLeft;
    std::string m_end;
};

} // namespace glimra::desktop
