#include "desktop/output_file.h"

#include "desktop/services/unique_fd.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace glimra::desktop {

namespace {

std::FILE* openOwn(const std::string& path) {
    constexpr mode_t kOwnersAlone = S_IRUSR | S_IWUSR;
    UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC,
                         kOwnersAlone));
    // So a link and a pipe that nobody reads refuse.
    const bool isSpecial = !file && (errno == ELOOP || errno == ENXIO);
    if (!file && !isSpecial)
        throw std::system_error(errno, std::generic_category(), path);
    struct stat status {};
    if (isSpecial || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        throw std::runtime_error(path + " is a link, a pipe or a device; name a file");
    if (status.st_uid != ::geteuid())
        throw std::runtime_error(path + " is another user's file");
    // Some file systems, as on sticks, know no modes.
    static_cast<void>(::fchmod(file.get(), kOwnersAlone));
    std::FILE* const stream = ::ftruncate(file.get(), 0) == 0 ? ::fdopen(file.get(), "w") : nullptr;
    if (stream == nullptr)
        throw std::system_error(errno, std::generic_category(), path);
    static_cast<void>(file.release()); // it is the stream's now
    return stream;
}

} // namespace

OutputFile::OutputFile(const std::string& path, std::size_t mostBytes)
    : m_path(path),
      m_file(openOwn(path)),
      m_bytesLeft(mostBytes) {
}

std::string OutputFile::append(std::string_view lines) {
    if (!m_end.empty())
        return m_end;
    if (lines.size() > m_bytesLeft)
        m_end = "is full";
    else if (std::fwrite(lines.data(), 1, lines.size(), m_file.get()) != lines.size() ||
             std::fflush(m_file.get()) != 0)
        m_end = "can't be written any more";
    if (m_end.empty())
        m_bytesLeft -= lines.size();
    else
        m_file.reset();
    return m_end;
}

} // namespace glimra::desktop
