#pragma once

#include "app/message_log.h"
#include "events/dispatcher.h"
#include "simulated/user_defaults.h"
#include "support/fake_driver.h"
#include "support/system_lines.h"

namespace glimra::tests {

/// The dispatcher with all that it commands, for what no queue of messages brings about.
struct EventsMachine {
    EventsMachine(platform::RunLoop& loop, platform::LedDriver& keyboard) : runLoop(loop), driver(keyboard) {}

    platform::RunLoop& runLoop;
    platform::LedDriver& driver;
    simulated::InMemoryDefaults defaults;
    tests::SystemLines systemLog;
    FixedRandom random;

    lighting::LightingState state;
    profiles::ProfileState profile;
    profiles::CanvasBuffer canvas;
    profiles::CanvasKeyCodes canvasKeyCodes;
    profiles::ActionKeyMap keys = profiles::loadActionKeyMap(defaults, systemLog);
    events::EffectState effects;
    events::OptionState options;
    events::MessageState messages;
    events::CooldownState cooldowns;
    platform::CanvasView canvasView;
    platform::TextField blinkTimeTextbox;
    platform::TextView logView;
    app::LogState logState;

    app::MessageLog log{logState, logView};
    lighting::LightingOutput lighting{driver, random, state};
    profiles::ProfileStore store{{defaults, systemLog, state, canvas, canvasKeyCodes}};
    events::Effects animations{runLoop, driver, random, lighting};
    events::CooldownDisplay display{{runLoop, driver, defaults, systemLog, lighting, state, store, canvas,
                                     canvasView, blinkTimeTextbox, keys, profile, effects, options,
                                     cooldowns}};
    events::Dispatcher dispatcher{
        {driver, log, lighting, state, store, profile, animations, display, options, effects, messages}};
};

} // namespace glimra::tests
