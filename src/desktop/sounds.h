#pragma once

#include "platform/system_services.h"

namespace glimra::desktop {

/// Every sound is the desktop's bell.
class Sounds final : public platform::Sounds {
public:
    void play(std::string_view name) override;
};

} // namespace glimra::desktop
