#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace glimra::keyboards {

/// Chooses by itself: the first driver that has something to light.
inline constexpr std::string_view kAutomaticDriver = "auto";

enum class Demand {
    /// Only when there is something to light now.
    IfPresent,
    /// Also when what it lights may come later.
    Anyway
};

struct DriverRow {
    std::string_view name;
    /// Takes the driver into use; returns why that did not come about, as a sentence, empty when it did.
    std::function<std::string(Demand)> take;
};

struct Refusal {
    std::string driver;
    std::string reason;
};

struct DriverChoice {
    /// Empty when no driver could be taken.
    std::string driver;
    /// What was tried before, in this order.
    std::vector<Refusal> refusals;
};

/// Takes the driver called `wanted` into use, whether there is something to light or not. When it refuses, or
/// `wanted` is `kAutomaticDriver` or none of the rows, takes the first row that has something to light.
DriverChoice chooseDriver(std::span<const DriverRow> rows, std::string_view wanted);

/// Lines for the log: why the others were not taken, then which was.
std::vector<std::string> describe(const DriverChoice& choice);

} // namespace glimra::keyboards
