#include "platform/whole_file.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <system_error>

namespace glimra::platform {

namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

std::string lastError() {
    return std::generic_category().message(errno);
}

/// Opening a pipe waits until somebody opens its other end, and a device may have no end at all.
bool isPipeOrDevice(const std::string& path) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    return std::filesystem::is_other(status);
}

constexpr const char* kNoPlainFile = "it is a pipe or a device, not a file";

} // namespace

FileContent readWholeFile(const std::string& path, std::size_t limit) {
    if (isPipeOrDevice(path))
        return {{}, kNoPlainFile};
    const File file(std::fopen(path.c_str(), "rb"));
    if (!file)
        return {{}, lastError()};
    FileContent content;
    content.bytes.resize(limit);
    content.bytes.resize(std::fread(content.bytes.data(), 1, limit, file.get()));
    if (std::ferror(file.get()) != 0)
        return {{}, lastError()};
    return content;
}

std::string writeWholeFile(const std::string& path, std::span<const std::uint8_t> bytes,
                           FileReaders readers) {
    if (isPipeOrDevice(path))
        return kNoPlainFile;
    File file(std::fopen(path.c_str(), "wb"));
    std::error_code notKnown; // some file systems, as on sticks, know no modes
    if (file && readers == FileReaders::OwnerAlone)
        std::filesystem::permissions(
            path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write, notKnown);
    if (!file || (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()))
        return lastError();
    // Buffered data is written only now, so even closing can fail.
    return std::fclose(file.release()) == 0 ? std::string{} : lastError();
}

} // namespace glimra::platform
