#include "keyboards/model/key_effect.h"

#include <algorithm>

namespace glimra::keyboards {

namespace {

/// Shares of a mixture are integers: this is the whole, half of it is one half.
constexpr int kWhole = 1 << 16;

Rgb mixed(Rgb from, Rgb to, int shareOfTo) {
    const auto channel = [shareOfTo](int a, int b) {
        return static_cast<std::uint8_t>((a * kWhole + (b - a) * shareOfTo + kWhole / 2) / kWhole);
    };
    return {channel(from.red, to.red), channel(from.green, to.green), channel(from.blue, to.blue)};
}

/// The steps in which an effect is shown. They begin anew with each span, at the end of which the effect is
/// at one of its two ends: whole, or gone.
struct Steps {
    Duration span;
    Duration step;

    Duration lastBefore(Duration elapsed) const {
        const Duration rest = elapsed % span;
        return elapsed - rest + std::min(rest / step, span / step - 1) * step;
    }
    Duration firstAfter(Duration elapsed) const {
        const Duration rest = elapsed % span;
        const auto next = rest / step + 1;
        return elapsed - rest + (next < span / step ? next * step : span);
    }
};

/// For an effect whose period is not 0.
Steps stepsOf(const KeyEffect& effect) {
    const bool isPulse = effect.kind == KeyEffect::Kind::Pulse;
    const Duration half = isPulse ? effect.period / 2 : effect.period;
    if (half >= kFrame)
        return {half, isPulse ? half / (half / kFrame) : half};
    // After an odd number of halves the effect is at its other end.
    const Duration several = half * ((kFrame / half + 1) | 1);
    return {several, several};
}

Duration elapsedAt(const KeyEffect& effect, Time time) {
    return std::max(time - effect.begin, Duration::zero());
}

bool stands(const KeyEffect& effect) {
    return effect.period == Duration::zero() ||
           (effect.kind == KeyEffect::Kind::Pulse && effect.start == effect.finish);
}

} // namespace

bool runsAt(const KeyEffect& effect, Time time) {
    return effect.kind != KeyEffect::Kind::None && time < effect.end;
}

Rgb colorAt(const KeyEffect& effect, Time time, Rgb base) {
    if (stands(effect))
        return effect.start;
    const Duration elapsed = elapsedAt(effect, time);
    if (effect.kind == KeyEffect::Kind::Flash)
        return elapsed / effect.period % 2 == 0 ? effect.start : base;
    const Duration position = elapsed % effect.period;
    const Duration fromStart = std::min(position, effect.period - position);
    const double share =
        2.0 * static_cast<double>(fromStart.count()) / static_cast<double>(effect.period.count());
    return mixed(effect.start, effect.finish, static_cast<int>(share * kWhole));
}

Time stepAt(const KeyEffect& effect, Time time) {
    return stands(effect) ? time : effect.begin + stepsOf(effect).lastBefore(elapsedAt(effect, time));
}

Time nextStep(const KeyEffect& effect, Time after) {
    if (stands(effect))
        return effect.end;
    return std::min(effect.begin + stepsOf(effect).firstAfter(elapsedAt(effect, after)), effect.end);
}

} // namespace glimra::keyboards
