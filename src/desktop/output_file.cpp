#include "desktop/output_file.h"

#include <cerrno>
#include <system_error>

namespace glimra::desktop {

OutputFile::OutputFile(const std::string& path) : m_path(path), m_file(std::fopen(path.c_str(), "we")) {
    if (!m_file)
        throw std::system_error(errno, std::generic_category(), path);
}

bool OutputFile::append(std::string_view lines) {
    if (!m_file)
        return false;
    if (std::fwrite(lines.data(), 1, lines.size(), m_file.get()) == lines.size() &&
        std::fflush(m_file.get()) == 0)
        return true;
    m_file.reset();
    return false;
}

} // namespace glimra::desktop
