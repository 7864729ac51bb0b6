#include "desktop/x11/process_text.h"

#include <array>
#include <atomic>
#include <future>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace glimra::desktop {

namespace {

constexpr int kMostThreads = 4;

std::optional<std::string> readBeginning(const std::string& file) {
    std::array<char, 4096> bytes;
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0)
        return std::nullopt;
    const ssize_t count = ::read(descriptor, bytes.data(), bytes.size());
    ::close(descriptor);
    return count < 0 ? std::nullopt
                     : std::optional(std::string(bytes.data(), static_cast<std::size_t>(count)));
}

} // namespace

std::optional<std::string> readPatiently(const std::string& file, std::chrono::milliseconds patience) {
    static std::atomic<int> threads = 0;
    if (++threads > kMostThreads) {
        --threads;
        return std::nullopt;
    }
    std::promise<std::optional<std::string>> promise;
    auto text = promise.get_future();
    try {
        // Detached, since nothing can interrupt it.
        std::thread([file, result = std::move(promise)]() mutable {
            std::optional<std::string> read = readBeginning(file);
            --threads;
            result.set_value(std::move(read));
        }).detach();
    } catch (const std::system_error&) {
        --threads;
        return std::nullopt;
    }
    return text.wait_for(patience) == std::future_status::ready ? text.get() : std::nullopt;
}

} // namespace glimra::desktop
