#pragma once

#include "app/actions.h"
#include "platform/run_loop.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"
#include "screenlink/strip_code.h"

#include <istream>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace glimra::tools {

// One struct for each command of a script, with its arguments.

struct SetDefault {
    std::string key;
    platform::StoredValue value;
};

struct ConnectDisplay {
    double width;
    double height;
    double scale;
};

struct DisconnectDisplay {};

struct SetStripGeometry {
    double left;
    double width;
};

struct PaintStrip {
    screenlink::StripFrame frame;
};

/// The add-on shows one token.
struct ShowToken {
    screenlink::Token token;
};

struct HandOverToken {
    std::string token;
};

struct Start {};

struct Wait {
    platform::Duration duration;
};

struct SetFrontmost {
    std::optional<platform::RunningApplication> application;
};

enum class PowerEvent { Sleep, Wake };

struct SetOptionKey {
    bool down;
};

struct ModalSetting {
    std::string outlet;
    std::variant<std::string, int> value;
};

struct QueueAnswer {
    int code;
    std::vector<ModalSetting> settings;
};

struct QueuePath {
    std::string path;
};

struct PerformAction {
    const app::ActionRow* action;
    app::ActionArgument argument;
};

struct Quit {};

enum class DumpKind { State, Defaults, Log, Controls, Bitmap };

struct Dump {
    DumpKind kind;
    /// Of a bitmap, 0 to 9.
    std::size_t profile = 0;
    /// The argument, as the line of output repeats it.
    std::string what;
};

using Command = std::variant<SetDefault, ConnectDisplay, DisconnectDisplay, SetStripGeometry, PaintStrip,
                             ShowToken, HandOverToken, Start, Wait, SetFrontmost, PowerEvent, SetOptionKey,
                             QueueAnswer, QueuePath, PerformAction, Quit, Dump>;

using Script = std::vector<Command>;

struct ScriptError {
    /// Counted from 1.
    std::size_t line;
    std::string message;
};

/// Reads a whole script, or up to the first line that can't be understood.
std::variant<Script, ScriptError> readScript(std::istream& text);

} // namespace glimra::tools
