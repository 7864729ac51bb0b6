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

/// Runs a script and gives the lines of these kinds (all when none is named) as text, without line ends. A
/// script that can't be understood is a test failure.
inline std::vector<std::string> replayText(std::string_view script,
                                           std::initializer_list<trace::TraceKind> kinds = {}) {
    std::istringstream text{std::string(script)};
    const auto read = tools::readScript(text);
    std::vector<std::string> lines;
    if (const auto* error = std::get_if<tools::ScriptError>(&read)) {
        ADD_FAILURE() << "line " << error->line << ": " << error->message;
        return lines;
    }
    tools::ReplayRun::Options options;
    if (kinds.size() > 0)
        options.kinds = {};
    for (const trace::TraceKind kind : kinds)
        options.kinds.add(kind);
    tools::ReplayRun run(
        options, [&lines](std::string_view line) { lines.emplace_back(line.substr(0, line.size() - 1)); });
    run.run(std::get<tools::Script>(read));
    return lines;
}

/// The same as JSON values.
inline std::vector<nlohmann::ordered_json> replay(std::string_view script,
                                                  std::initializer_list<trace::TraceKind> kinds = {}) {
    std::vector<nlohmann::ordered_json> values;
    for (const std::string& line : replayText(script, kinds))
        values.push_back(nlohmann::ordered_json::parse(line));
    return values;
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
