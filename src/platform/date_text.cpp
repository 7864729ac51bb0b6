#include "platform/date_text.h"

#include <array>
#include <ctime>

namespace glimra::platform {

std::string dateText(std::chrono::system_clock::time_point moment) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(moment);
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 64> text{};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S +0000", &parts)};
}

} // namespace glimra::platform
