#include "simulated/simulated_platform.h"

namespace glimra::simulated {

platform::Platform SimulatedPlatform::platform() {
    return {application,  runLoop,         readerThread, readerCapture,  mainCapture, ledDriver,
            userDefaults, workspace,       windowSystem, childProcesses, sounds,      random,
            systemLog,    processActivity, modifiers,    bundle};
}

} // namespace glimra::simulated
