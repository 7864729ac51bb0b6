#pragma once

#include "desktop/doctor/finding.h"
#include "desktop/options.h"
#include "platform/system_services.h"
#include "platform/user_defaults.h"

#include <memory>

namespace glimra::desktop::doctor {

// Each looks at one part of the machine, as the application would use it, and leaves it as it was. Each takes
// a few seconds at most. Main thread, with an application object.

/// What a check finds is in its findings alone.
struct SilentLog final : platform::SystemLog {
    void write(std::string_view) override {}
};

/// The settings as they would be used, read from a copy.
class SettingsCopy {
public:
    explicit SettingsCopy(const Options& options);
    ~SettingsCopy();

    const platform::UserDefaults& values() const;
    Findings findings() const;

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};

/// Capture, main display, and whether the strip shows.
Findings checkScreen(const Options& options, const platform::UserDefaults& settings);
/// Every driver, the permission for devices, and which driver would be taken.
Findings checkKeyboards(const Options& options, const platform::UserDefaults& settings);
/// Buses, login manager, speech and sound.
Findings checkServices();

} // namespace glimra::desktop::doctor
