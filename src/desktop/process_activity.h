#pragma once

#include "platform/system_services.h"

namespace glimra::desktop {

/// Tells the machine nothing yet: it may fall asleep while the program reads the screen.
class ProcessActivity final : public platform::ProcessActivity {
public:
    void begin(std::string_view) override {}
    void end(std::string_view) override {}
};

} // namespace glimra::desktop
