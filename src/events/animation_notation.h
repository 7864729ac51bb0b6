#pragma once

#include "events/animation.h"
#include "lighting/lighting_output.h"

#include <algorithm>
#include <initializer_list>

// What the tables of animations are written with.

namespace glimra::events {

template <std::size_t Count>
using Steps = std::array<Step, Count>;

/// The steps of all parts, one part after the other.
template <std::size_t... Counts>
constexpr auto joined(const Steps<Counts>&... parts) {
    Steps<(Counts + ...)> steps;
    auto end = steps.begin();
    ((end = std::copy(parts.begin(), parts.end(), end)), ...);
    return steps;
}

inline constexpr Steps<1> kOnAllDevices{Step{TargetDevices{lighting::kAllDevices}}};
inline constexpr Steps<1> kOnPerKeyDevices{Step{TargetDevices{lighting::kPerKeyDevices}}};
inline constexpr Steps<1> kBackToProfile{Step{Frame{Ground::Profile}}};

/// A step for each number from First to Last; `make` turns the number into what the step does.
template <int First, int Last, class Make>
constexpr auto counted(Duration wait, Make make) {
    Steps<Last - First + 1> steps;
    int number = First;
    for (Step& step : steps)
        step = {make(number++), wait};
    return steps;
}

/// Every key in one colour after another, each for `wait`.
template <class... Colors>
constexpr auto wholeKeyboard(Duration wait, const Colors&... colors) {
    return Steps<sizeof...(colors)>{{Step{AllKeys{colors}, wait}...}};
}

/// The bands with these numbers; numbers outside 0 to `count` - 1 are left out.
constexpr Bands bands(int count, std::initializer_list<int> numbers, Rgb color) {
    Bands bands{count, 0, color};
    for (const int number : numbers)
        if (number >= 0 && number < count)
            bands.chosen |= 1U << number;
    return bands;
}

/// All bands from number `first` on.
constexpr Bands bandsFrom(int count, int first, Rgb color) {
    return {count, (1U << count) - (1U << first), color};
}

} // namespace glimra::events
