#pragma once

#include "platform/system_services.h"

namespace glimra::platform {

/// For code that reads settings and must not report unusable ones.
struct SilentLog final : SystemLog {
    void write(std::string_view) override {}
};

} // namespace glimra::platform
