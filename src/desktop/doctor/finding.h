#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace glimra::desktop::doctor {

enum class Health {
    Good,
    /// Something is missing that the program can do without.
    Limited,
    /// The program cannot do what it is for.
    Bad
};

/// What was found out about one part of the machine.
struct Finding {
    /// For programs that read it: "capture", "keyboard-usb".
    std::string check;
    Health health = Health::Good;
    /// A sentence or two.
    std::string text;
    /// What to do about it; empty where nothing is to be done.
    std::string remedy{};
    /// Numbers and names that stand in `text`, for programs.
    nlohmann::ordered_json details = nlohmann::ordered_json::object();
};

using Findings = std::vector<Finding>;

} // namespace glimra::desktop::doctor
