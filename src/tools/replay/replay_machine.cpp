#include "tools/replay/replay_machine.h"

#include <utility>

namespace glimra::tools {

ReplayMachine::ReplayMachine(std::uint32_t seed, platform::LedDriver& keyboard, trace::TraceWriter& writer,
                             trace::TracedWindowSystem::WindowName nameOfWindow)
    : outside(seed),
      ledDriver(keyboard, writer),
      workspace(outside.workspace, writer),
      windowSystem(outside.windowSystem, writer, std::move(nameOfWindow)),
      childProcesses(outside.childProcesses, writer),
      sounds(outside.sounds, writer),
      systemLog(outside.systemLog, writer),
      processActivity(outside.processActivity, writer),
      platform{outside.application,
               outside.runLoop,
               outside.readerThread,
               outside.readerCapture,
               outside.mainCapture,
               ledDriver,
               outside.userDefaults,
               workspace,
               windowSystem,
               childProcesses,
               sounds,
               outside.random,
               systemLog,
               processActivity,
               outside.modifiers,
               outside.bundle} {
    platform.bundle.shortVersion = GLIMRA_VERSION;
    platform.bundle.ledFrameworkVersion = "9.0.0";
}

} // namespace glimra::tools
