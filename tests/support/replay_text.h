#pragma once

#include "tools/replay/replay_run.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <initializer_list>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::tests {

/// Runs a script and gives the lines of these kinds. A script that can't be understood is a test failure.
inline std::vector<nlohmann::ordered_json> replay(std::string_view script,
                                                  std::initializer_list<trace::TraceKind> kinds) {
    std::istringstream text{std::string(script)};
    const auto read = tools::readScript(text);
    std::vector<nlohmann::ordered_json> lines;
    if (const auto* error = std::get_if<tools::ScriptError>(&read)) {
        ADD_FAILURE() << "line " << error->line << ": " << error->message;
        return lines;
    }
    tools::ReplayRun::Options options;
    options.kinds = {};
    for (const trace::TraceKind kind : kinds)
        options.kinds.add(kind);
    tools::ReplayRun run(
        options, [&lines](std::string_view line) { lines.push_back(nlohmann::ordered_json::parse(line)); });
    run.run(std::get<tools::Script>(read));
    return lines;
}

/// What a run does to the keyboard from a moment on, each call as its moment, the function's name without
/// "LogiLed" and the arguments, those of a bitmap left out: "0.4 StopEffectsOnKey 30".
inline std::vector<std::string> ledCalls(std::string_view script, double since) {
    std::vector<std::string> calls;
    for (const auto& line : replay(script, {trace::TraceKind::Led})) {
        if (line["t"].get<double>() < since)
            continue;
        const auto function = line["call"].get<std::string>().substr(std::string_view("LogiLed").size());
        std::string call = line["t"].dump() + " " + function;
        if (function != "SetLightingFromBitmap")
            for (const auto& argument : line["args"])
                call += " " + argument.dump();
        calls.push_back(std::move(call));
    }
    return calls;
}

} // namespace glimra::tests
