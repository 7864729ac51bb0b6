#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

namespace glimra::desktop {

/// A file that is written line by line, each as it happens: it is for the time when something goes wrong.
class OutputFile {
public:
    /// Begins the file anew. Throws std::system_error when it cannot be written.
    explicit OutputFile(const std::string& path);

    const std::string& path() const { return m_path; }
    /// False when it could not be written to the end; nothing more is then.
    bool append(std::string_view lines);

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    std::string m_path;
    std::unique_ptr<std::FILE, Close> m_file;
};

} // namespace glimra::desktop
