#include "simulated/simulated_platform.h"

#include <utility>

namespace glimra::simulated {

platform::Platform SimulatedPlatform::platform(platform::LedDriver& keyboard, platform::Bundle bundle) {
    return {.application = application,
            .runLoop = runLoop,
            .readerThread = readerThread,
            .readerCapture = readerCapture,
            .mainCapture = mainCapture,
            .ledDriver = keyboard,
            .userDefaults = userDefaults,
            .workspace = workspace,
            .windowSystem = windowSystem,
            .childProcesses = childProcesses,
            .sounds = sounds,
            .random = random,
            .systemLog = systemLog,
            .processActivity = processActivity,
            .modifiers = modifiers,
            .bundle = std::move(bundle),
            .settingsFolder = {}};
}

} // namespace glimra::simulated
