#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace glimra::desktop::doctor {

enum class Health {
    Good,
    /// Something is missing that the program can do without.
    Limited,
    /// The program cannot do its job.
    Bad
};

/// The result of one check.
struct Finding {
    /// The name of the check, for programs: "capture", "keyboard-usb".
    std::string check;
    Health health = Health::Good;
    /// A sentence or two.
    std::string text;
    /// How to fix it; empty when nothing needs fixing.
    std::string remedy{};
    /// The numbers and names in `text`, for programs.
    nlohmann::ordered_json details = nlohmann::ordered_json::object();
};

using Findings = std::vector<Finding>;

} // namespace glimra::desktop::doctor
