#include "desktop/addon/durable_files.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace glimra::desktop::addon {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostBytes = 16U << 20U;

} // namespace

void check(bool isDone) {
    if (!isDone)
        throw std::system_error(errno, std::generic_category());
}

platform::FileContent readFile(const fs::path& file) {
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    return error ? platform::FileContent{{}, error.message()}
                 : platform::readWholeFile(file.string(), std::min<std::uintmax_t>(size, kMostBytes));
}

UniqueFd openFolder(const fs::path& folder) {
    UniqueFd opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    check(opened.get() >= 0);
    return opened;
}

void flush(int descriptor) {
    check(::fsync(descriptor) == 0 || errno == EINVAL);
}

void copyFile(const fs::path& from, const fs::path& to) {
    const platform::FileContent content = readFile(from);
    if (!content.error.empty())
        throw std::runtime_error(from.string() + ": " + content.error);
    const UniqueFd file(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
    check(file.get() >= 0);
    for (std::size_t written = 0; written < content.bytes.size();) {
        const ssize_t count =
            ::write(file.get(), content.bytes.data() + written, content.bytes.size() - written);
        check(count > 0 || errno == EINTR);
        written += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
    }
    flush(file.get());
}

} // namespace glimra::desktop::addon
