#pragma once

#include "platform/system_services.h"

namespace glimra::platform {

/// For whoever reads settings without wanting to complain about them.
struct SilentLog final : SystemLog {
    void write(std::string_view) override {}
};

} // namespace glimra::platform
