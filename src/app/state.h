#pragma once

#include "app/launcher.h"
#include "app/message_log.h"
#include "events/event_state.h"
#include "lighting/lighting_state.h"
#include "profiles/action_key_map.h"
#include "profiles/canvas_buffer.h"
#include "profiles/profile_state.h"
#include "screenlink/scan_settings.h"
#include "screenlink/screen_reader.h"

#include <vector>

namespace glimra::app {

/// All that the application remembers, in the parts in which its operations share it.
struct State {
    LogState log;
    lighting::LightingState lighting;
    profiles::ProfileState profile;
    profiles::CanvasBuffer canvas;
    profiles::CanvasKeyCodes canvasKeyCodes;
    profiles::ActionKeyMap actionKeys;
    std::vector<lighting::KeyCode> saveActionBarKeyMap;
    events::EffectState effects;
    events::OptionState options;
    events::MessageState messages;
    events::CooldownState cooldowns;
    screenlink::ScanSettings scan;
    screenlink::SharedStripGeometry stripGeometry;
    screenlink::ReaderFlags readerFlags;
    LauncherState launcher;
};

} // namespace glimra::app
