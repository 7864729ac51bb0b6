#include "app/operations.h"

namespace glimra::app {

Operations::Operations(const platform::Platform& platform, Outlets& outlets, State& state)
    : log(state.log, outlets.myTextScroll),
      lighting(platform.ledDriver, platform.random, state.lighting),
      profileStore(
          {platform.userDefaults, platform.systemLog, state.lighting, state.canvas, state.canvasKeyCodes}),
      effects(platform.runLoop, platform.ledDriver, platform.random, lighting),
      cooldownDisplay({platform.runLoop, platform.ledDriver, platform.userDefaults, platform.systemLog,
                       lighting, state.lighting, profileStore, state.canvas, outlets.keyboardCanvas,
                       outlets.blinkTimeTextbox, state.actionKeys, state.profile, state.effects,
                       state.options, state.cooldowns}),
      dispatcher({platform.ledDriver, log, lighting, state.lighting, profileStore, state.profile, effects,
                  cooldownDisplay, state.options, state.effects, state.messages}),
      messageQueue(state.messages, state.effects, state.cooldowns),
      messagePump({platform.runLoop, platform.workspace, platform.ledDriver, lighting, dispatcher,
                   state.messages, state.effects, state.options, state.lighting, state.profile}),
      calibration({platform.runLoop, platform.mainCapture, platform.sounds, platform.childProcesses,
                   platform.userDefaults, log, state.messages, state.scan, state.stripGeometry}),
      unsavedEdits(platform.windowSystem, outlets, profileStore, state.profile),
      canvasEdits({outlets, profileStore, state.profile, state.canvas, state.lighting}),
      colorPainter({lighting, canvasEdits, state.canvas, state.profile, outlets.keyboardCanvas,
                    state.options.useSingleColorMode},
                   state.canvasKeyCodes),
      windowCloser(outlets, platform.application),
      actionKeySetter({platform.userDefaults, outlets, unsavedEdits, windowCloser, profileStore,
                       state.profile, state.canvas, state.lighting, state.actionKeys,
                       state.saveActionBarKeyMap}),
      colorProgrammer({platform.runLoop, platform.windowSystem, platform.userDefaults, platform.systemLog,
                       outlets, unsavedEdits, canvasEdits, lighting, state.lighting, profileStore,
                       state.profile, state.canvas, cooldownDisplay, dispatcher, state.options,
                       state.messages}),
      profileTransfer({platform.windowSystem, platform.userDefaults, platform.systemLog, log, platform.bundle,
                       platform.settingsFolder, outlets, lighting, state.lighting, profileStore,
                       state.profile, state.canvas, state.canvasKeyCodes, cooldownDisplay, state.options}),
      launcher({platform.windowSystem, platform.userDefaults, platform.systemLog, platform.childProcesses,
                platform.modifiers, log, outlets, windowCloser, state.launcher}),
      help({platform.runLoop, platform.workspace, platform.bundle, outlets, state.messages}),
      screenReader(platform.readerCapture, platform.runLoop, log, platform.application, messageQueue,
                   state.stripGeometry, state.readerFlags),
      diagnostics({log, messageQueue, outlets.debugMenuItem, state.log, state.messages, state.stripGeometry,
                   screenReader}),
      staleEffects({platform.runLoop, platform.userDefaults, platform.systemLog, screenReader, messagePump,
                    platform.ledDriver, log, outlets.keyboardCanvas, effects, lighting, state.lighting,
                    state.profile, state.effects, state.options}),
      messageClock({platform.runLoop, platform.userDefaults, platform.systemLog, platform.workspace,
                    messageQueue, messagePump, staleEffects, state.effects, state.readerFlags}) {
}

} // namespace glimra::app
