#pragma once

#include "app/action_key_setter.h"
#include "app/canvas_edits.h"
#include "app/color_painter.h"
#include "app/color_programmer.h"
#include "app/diagnostics.h"
#include "app/help.h"
#include "app/launcher.h"
#include "app/message_log.h"
#include "app/outlets.h"
#include "app/profile_transfer.h"
#include "app/state.h"
#include "app/unsaved_edits.h"
#include "app/window_closer.h"
#include "events/cooldown_display.h"
#include "events/dispatcher.h"
#include "events/effects.h"
#include "lighting/lighting_output.h"
#include "platform/platform.h"
#include "profiles/profile_store.h"
#include "screenlink/calibration.h"
#include "screenlink/message_clock.h"
#include "screenlink/message_pump.h"
#include "screenlink/message_queue.h"
#include "screenlink/screen_reader.h"
#include "screenlink/stale_effects.h"

namespace glimra::app {

/// All that the application can do: the operations on its state, one object for each subject. In building
/// order: each is made from those above it.
struct Operations {
    Operations(const platform::Platform& platform, Outlets& outlets, State& state);

    Operations(const Operations&) = delete;
    Operations& operator=(const Operations&) = delete;

    MessageLog log;
    lighting::LightingOutput lighting;
    profiles::ProfileStore profileStore;
    events::Effects effects;
    events::CooldownDisplay cooldownDisplay;
    events::Dispatcher dispatcher;
    screenlink::MessageQueue messageQueue;
    screenlink::MessagePump messagePump;
    screenlink::Calibration calibration;
    UnsavedEdits unsavedEdits;
    CanvasEdits canvasEdits;
    ColorPainter colorPainter;
    WindowCloser windowCloser;
    ActionKeySetter actionKeySetter;
    ColorProgrammer colorProgrammer;
    ProfileTransfer profileTransfer;
    Launcher launcher;
    Help help;
    screenlink::ScreenReader screenReader;
    Diagnostics diagnostics;
    screenlink::StaleEffects staleEffects;
    screenlink::MessageClock messageClock;
};

} // namespace glimra::app
